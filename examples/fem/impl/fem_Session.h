#pragma once

#include "fem_Model.h"
#include "fem_ModelFile.h"

#include "cls_ClassRegistrar.h"

/// The root of everything that a script reaches.
///
/// Ownership:  owned by the Python module; owns its models, and the file that they page from.
/// Threads:    one thread.
class fem_Session final : public omu_InterfaceObj
{
public:
    static constexpr std::uint32_t CLASS_ID = fem_SESSION;

    fem_Session();

    static void Register(cls_ClassRegistrar& registrar);

    cow_String AsString(int depth) const override;
    /// Null: there is one session.
    omu_Primitive* Copy() const override { return nullptr; }

private:
    omu_Primitive* GetFile();
    omu_Primitive* GetModels();

    omu_Primitive* Bodies(omu_Arguments& arguments);
    omu_Primitive* CreateModel(omu_Arguments& arguments);
    omu_Primitive* DeleteModel(omu_Arguments& arguments);
    omu_Primitive* Open(omu_Arguments& arguments);
    omu_Primitive* Save(omu_Arguments& arguments);

    void DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const;
    /// Takes over all that the file holds, or changes nothing.
    void Read(std::unique_ptr<fem_ModelFile> file);
    /// All or nothing.
    void Write(sql_Store& store, bool isOtherFile);
    /// Takes back what was not saved, in the models too.
    void RollBack(sql_Store& store) const;
    /// Throws when another session has saved to the session's file.
    void RequireUnchanged(sql_Store& store) const;

    cls_ClassRegistrar m_registrar;
    std::unique_ptr<fem_ModelFile> m_file; // null: never saved or opened
    cls_Uid m_uid = cls_Uid::AllocateUid();
    int m_saves = 0;                                                 // how often what the file holds was saved
    fem_Repository<cow_String, fem_Model> m_models{*this, "models"}; // behind the file, from which they page
};
