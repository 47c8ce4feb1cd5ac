#include "cls_ClassRegistrar.h"

#include "nex_TextException.h"
#include "pnt_debugPrint.h"
#include "typ_ArchCompTable.h"

#include <cstdio>
#include <utility>

namespace
{
/// Throws with a printf format of this file's own; what is longer than the buffer is cut.
template <class... Args> [[noreturn]] void Fail(int line, const char* format, Args... args)
{
    char text[500];
    std::snprintf(text, sizeof text, format, args...);
    nex_TextException(text).Throw("source/cls/impl/cls_ClassRegistrar", line);
}
} // namespace

cls_ClassRegistrar::cls_ClassRegistrar() = default;
cls_ClassRegistrar::~cls_ClassRegistrar() = default;

cls_ClassMetadata& cls_ClassRegistrar::CreateClassMD(const cow_String& name, std::uint32_t classId, int version,
                                                     cls_ClassMetadata::CtorFn ctor, std::uint32_t option)
{
    auto created = std::make_unique<cls_ClassMetadata>(name, classId, version, ctor, option);
    cls_ClassMetadata& metadata = *created;
    std::unique_ptr<cls_ClassMetadata>& slot = m_versions[classId][version];
    created->m_replaced = std::exchange(slot, nullptr);
    slot = std::move(created);
    if (m_current.Find(classId) == nullptr) {
        m_current.Insert(classId, &metadata);
        m_names.try_emplace(name, classId);
    }
    return metadata;
}

void cls_ClassRegistrar::DeleteClass(const cow_String& name, std::uint32_t classId)
{
    m_names.try_emplace(name, classId);
}

const cls_ClassMetadata& cls_ClassRegistrar::ConstGet(std::uint32_t classId) const
{
    cls_ClassMetadata* const* const found = m_current.Find(classId);
    if (found == nullptr) {
        pnt_debugPrint() << "class Name=" << typ_ArchCompTable::GetName(classId) << '\n';
        Fail(__LINE__, "cls_ClassRegistrar::ConstGet failed: Class ID %d is not declared in metadata.",
             static_cast<int>(classId));
    }
    return **found;
}

const cls_ClassMetadata& cls_ClassRegistrar::GetClassMetadata(std::uint32_t classId, int version) const
{
    const auto versions = m_versions.find(classId);
    if (versions == m_versions.end()) {
        const cow_String name = typ_ArchCompTable::GetName(classId);
        pnt_debugPrint() << "cidName:\n" << name << '\n';
        Fail(__LINE__, "cls_ClassRegistrar::GetClassMetadata failed: Class ID %d (%s) is not declared in metadata.",
             static_cast<int>(classId), name.AsCharPtr());
    }
    const auto found = versions->second.find(version);
    if (found == versions->second.end()) {
        pnt_debugPrint() << "version:" << version << '\n';
        Fail(__LINE__,
             "cls_ClassRegistrar::GetClassMetadata failed: Class ID %d (%s) is not declared in metadata for version "
             "%d.",
             static_cast<int>(classId), typ_ArchCompTable::GetName(classId).AsCharPtr(), version);
    }
    return *found->second;
}

std::uint32_t cls_ClassRegistrar::GetClassID(const cow_String& name) const
{
    const auto found = m_names.find(name);
    if (found == m_names.end()) {
        Fail(__LINE__, "cls_ClassRegistrar::GetClassID failed: Class ID can't be retrieved from class name %s.",
             name.AsCharPtr());
    }
    return found->second;
}

int cls_ClassRegistrar::GetLastClassVersionNumber(std::uint32_t classId) const
{
    const auto versions = m_versions.find(classId);
    if (versions == m_versions.end()) {
        Fail(__LINE__, "cls_ClassRegistrar::GetLastClassVersionNumber failed: Class ID %d is not declared in metadata.",
             static_cast<int>(classId));
    }
    return versions->second.rbegin()->first;
}

std::vector<const cls_ClassMetadata*> cls_ClassRegistrar::All() const
{
    std::vector<const cls_ClassMetadata*> all;
    for (const auto& [classId, versions] : m_versions) {
        for (const auto& [version, metadata] : versions) {
            all.push_back(metadata.get());
        }
    }
    return all;
}
