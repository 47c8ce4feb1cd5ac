#pragma once

#include "cow_String.h"

/// Names one persistent attribute of a class.
///
/// Ownership:  an ordinary value; the name is shared by copies.
/// Example:    visitor.Read(cls_FieldHandle("stringValue"), cow_String());
class cls_FieldHandle
{
public:
    static constexpr int NOT_NUMBERED = -1;

    /// No field: an empty name.
    cls_FieldHandle() = default;
    explicit cls_FieldHandle(const cow_String& name) : m_name(name) {}

    int FieldID() const noexcept { return m_id; }
    const cow_String& FieldName() const noexcept { return m_name; }
    /// A storage engine may number the fields; until then the id is NOT_NUMBERED.
    void SetFieldID(int id) noexcept { m_id = id; }

private:
    int m_id = NOT_NUMBERED;
    cow_String m_name;
};
