#pragma once

#include "fem_Part.h"

#include "omu_InterfaceObj.h"

#include <map>
#include <memory>

class fem_Session;

/// A named collection of parts, as scripts see it.
///
/// Ownership:  owned by its session; owns its parts.
class fem_Model final : public omu_InterfaceObj
{
public:
    explicit fem_Model(const cow_String& name);

    cow_String AsString(int depth) const override;
    /// Null: a model stays the one of its session; scripts get references to it.
    omu_Primitive* Copy() const override { return nullptr; }

    /// Throws omu_ValueErrorException when `to` is empty or the name of another part; then nothing changes.
    void RenamePart(const cow_String& from, const cow_String& to);

private:
    omu_Primitive* GetName();
    omu_Primitive* GetPartNames();

    omu_Primitive* CreatePart(omu_Arguments& arguments);
    omu_Primitive* GetPart(omu_Arguments& arguments);
    omu_Primitive* DeletePart(omu_Arguments& arguments);

    /// The name given as the method's one argument, which must be that of a part.
    cow_String TakePartName(omu_Arguments& arguments, const char* method) const;

    cow_String m_name;
    std::map<cow_String, std::unique_ptr<fem_Part>> m_parts;
};
