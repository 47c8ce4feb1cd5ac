#pragma once

#include "VEXomu_export.h"
#include "cls_ClassMetadata.h"
#include "cow_String.h"
#include "omi_UintTable.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

/// Every persistent class of the program, by id, by id and version, and by name.
///
/// Ownership:  owns the metadata it creates, also that replaced by a later registration of the same class and version.
/// Threads:    filled by one thread at start-up; read from any thread after that.
/// Complexity: ConstGet O(1), the other look-ups O(log classes).
/// Errors:     a look-up that fails throws nex_TextException; nothing changes.
/// References: metadata lives as long as its registrar.
/// Example:    const auto& md = registrar.GetClassMetadata(id, version); void* object = md.Ctor()(visitor);
class VEXOMU_API cls_ClassRegistrar
{
public:
    cls_ClassRegistrar();
    cls_ClassRegistrar(const cls_ClassRegistrar&) = delete;
    cls_ClassRegistrar& operator=(const cls_ClassRegistrar&) = delete;
    ~cls_ClassRegistrar();

    /// Registers a version of a class and returns its metadata, to be completed in one chain. The first registration of
    /// an id stays its current metadata, and the first class of a name keeps the name; a second registration of a
    /// version replaces the first in GetClassMetadata alone. All three are promised: several classes share one id.
    cls_ClassMetadata& CreateClassMD(const cow_String& name, std::uint32_t classId, int version,
                                     cls_ClassMetadata::CtorFn ctor, std::uint32_t option);
    /// Makes a name that is not known yet stand for `classId`, and nothing else: a class withdrawn from the schema stays
    /// found by name when old data is read. The name of the operation is promised, whatever it says.
    void DeleteClass(const cow_String& name, std::uint32_t classId);

    /// The current metadata of a class: the first that was registered.
    const cls_ClassMetadata& ConstGet(std::uint32_t classId) const;
    const cls_ClassMetadata& GetClassMetadata(std::uint32_t classId, int version) const;
    std::uint32_t GetClassID(const cow_String& name) const;
    /// The highest version registered for the class.
    int GetLastClassVersionNumber(std::uint32_t classId) const;
    /// The metadata of every version of every class, in the order of ids and versions.
    std::vector<const cls_ClassMetadata*> All() const;

private:
    using Versions = std::map<int, std::unique_ptr<cls_ClassMetadata>>;

    omi_UintTable<cls_ClassMetadata*> m_current; // owned by m_versions, some as replaced metadata
    std::map<std::uint32_t, Versions> m_versions;
    std::map<cow_String, std::uint32_t> m_names;
};
