#pragma once

#include "VEXomu_export.h"
#include "cls_Uid.h"
#include "cow_String.h"

#include <memory>

class cls_FieldHandle;
class cls_MementoRead;

/// Hands the stored record of an object to the object's reading constructor.
///
/// Ownership:  owns its memento, which may be null: reading without a stored record gives every default.
/// Threads:    belongs to one call.
/// Errors:     those of the storage engine.
/// Example:    Part::Part(const cls_ReadVisitor& visitor)
///                 : m_uid(visitor.GetUid()), m_label(visitor.Read(cls_FieldHandle("label"), cow_String())) {}
class VEXOMU_API cls_ReadVisitor
{
public:
    /// Takes over `memento`.
    explicit cls_ReadVisitor(cls_MementoRead* memento) noexcept;
    /// Another visitor on the same record.
    cls_ReadVisitor(const cls_ReadVisitor& parent);
    /// A visitor on the object that the parent's record holds in `field`.
    cls_ReadVisitor(const cls_ReadVisitor& parent, const cls_FieldHandle& field);
    cls_ReadVisitor& operator=(const cls_ReadVisitor&) = delete;
    ~cls_ReadVisitor();

    /// Non-zero when the record's class has the field.
    int FieldIsPresent(const cls_FieldHandle& field) const;
    /// Non-zero when the record holds data for the field.
    int DataIsPresent(const cls_FieldHandle& field) const;
    /// The stored identity; a fresh one on every call when there is no record.
    cls_Uid GetUid() const;
    /// The text of the field; `defaultText` when the field is absent.
    cow_String Read(const cls_FieldHandle& field, const cow_String& defaultText) const;
    /// The identifier of the record, for messages; empty when there is none.
    cow_String DbId() const;

    /// The record itself, for values of other types; null when there is none.
    cls_MementoRead* Memento() const noexcept { return m_memento.get(); }

private:
    std::unique_ptr<cls_MementoRead> m_memento;
};
