#pragma once

#include "fem_Named.h"

#include "cls_ArrayPrim.h"
#include "omu_BrenowName.h"
#include "omu_SeqIntObj.h"

/// Results of a step: a sequence of numbers, which may be longer than memory. Once it is saved it stands in the session's
/// file, one block of it in memory.
///
/// Ownership:  owned by its step.
/// Complexity: see cls_ArrayPrim.
class fem_Field final : public fem_Named<omu_SeqIntObj>
{
public:
    static constexpr omu_BrenowName::omu_BrenowNameEnum NAME_RULES = omu_BrenowName::KER_NAME;
    static constexpr std::uint32_t CLASS_ID = fem_FIELD;

    fem_Field(const omu_InterfaceObj& step, const cow_String& name, const cow_String& description);
    fem_Field(const omu_InterfaceObj& step, const cow_String& name, const cls_ReadVisitor& visitor);

    static void Register(cls_ClassRegistrar& registrar);
    void DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const;
    void Restore() const { m_values.Snap(); }

    int Length() const override { return m_values.Size(); }
    /// A number.
    omu_Primitive* Index(const int& index) const override;
    /// An array, which a script may keep for longer than the field.
    omu_Primitive* Slice(const int& low, const int& high) const override;
    // Not offered: values are only added.
    omu_Primitive* Repeat(const int&) const override { return nullptr; }
    omu_Primitive* Concat(omu_SeqIntObj*) const override { return nullptr; }
    int Remove(const int&) override { return 0; }
    int RemoveSlice(const int&, const int&) override { return 0; }

private:
    void Describe();

    omu_Primitive* GetDescription();
    omu_Primitive* SetDescription(omu_Arguments& arguments);
    omu_Primitive* AppendValues(omu_Arguments& arguments);
    omu_Primitive* Extremes(omu_Arguments& arguments);

    cow_String m_description;
    mutable cls_ArrayPrim<double> m_values; // mutable: a save changes where it is kept
};
