#pragma once

#include "VEXomu_export.h"
#include "cls_AttributeMetadata.h"
#include "cls_PayloadHolder.h"
#include "cow_String.h"
#include "omi_Btree.h"

#include <cstdint>
#include <memory>
#include <vector>

class cls_ReadVisitor;

/// Describes one version of a persistent class: its name and id, how its objects are built and which attributes they have.
///
/// Ownership:  belongs to the cls_ClassRegistrar that created it.
/// Threads:    filled at start-up; read from any thread after that.
/// Complexity: O(log attributes) to add or find one.
/// Example:    registrar.CreateClassMD("Part", Part::TypeId(), 1, Part::Ctor, 1)
///                 .AddDtor(Part::CowDtor)
///                 .AddAttribute(cls_FieldHandle("label"), cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE);
class VEXOMU_API cls_ClassMetadata
{
public:
    /// Builds an object of the class from its stored record; the caller owns it.
    using CtorFn = void* (*)(cls_ReadVisitor& visitor);
    /// Destroys what a payload holder of the class holds.
    using DtorFn = void (*)(cls_PayloadHolder* payload);

    static constexpr int DEFAULT_TABLE_EXTENT_QUANTUM = 4;

    /// `option` is kept as given; nothing here looks at it.
    cls_ClassMetadata(const cow_String& name, std::uint32_t classId, int version, CtorFn ctor, std::uint32_t option);
    cls_ClassMetadata(const cls_ClassMetadata&) = delete;
    cls_ClassMetadata& operator=(const cls_ClassMetadata&) = delete;
    ~cls_ClassMetadata();

    /// Adds an attribute under the field's name; a name that is already there keeps its first attribute.
    cls_ClassMetadata& AddAttribute(const cls_FieldHandle& field, cls_AttributeType type, std::uint32_t count,
                                    cls_CollectionType collection);
    cls_ClassMetadata& AddDtor(DtorFn dtor) noexcept;
    /// Sets the number of records by which the class's table grows; the value is not checked.
    cls_ClassMetadata& AddTableExtentQuantum(int quantum) noexcept;

    const cow_String& Name() const noexcept { return m_name; }
    std::uint32_t ClassId() const noexcept { return m_classId; }
    std::uint32_t Option() const noexcept { return m_option; }
    CtorFn Ctor() const noexcept { return m_ctor; }
    /// Null until AddDtor.
    DtorFn Dtor() const noexcept { return m_dtor; }
    int TableExtentQuantum() const noexcept { return m_tableExtentQuantum; }
    int Version() const noexcept { return m_version; }

    /// The largest field id among the attributes, -1 when there are none.
    int MaxFieldID() const;
    /// The attribute of that name, or null.
    const cls_AttributeMetadata* FindAttribute(const cow_String& name) const;
    /// The attributes in the order of their names, compared by unsigned bytes.
    std::vector<const cls_AttributeMetadata*> Attributes() const;

private:
    friend class cls_ClassRegistrar;

    cow_String m_name;
    std::uint32_t m_classId;
    std::uint32_t m_option;
    CtorFn m_ctor;
    DtorFn m_dtor = nullptr;
    int m_tableExtentQuantum = DEFAULT_TABLE_EXTENT_QUANTUM;
    int m_version;
    omi_Btree<cow_String, cls_AttributeMetadata> m_attributes; // by field name
    std::unique_ptr<cls_ClassMetadata> m_replaced; // an earlier description of the same version, still referred to
};
