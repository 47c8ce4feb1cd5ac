#pragma once

#include "VEXomu_export.h"
#include "cls_CollectionType.h"
#include "cls_FieldHandle.h"
#include "cls_PayloadHolder.h"

#include <cstdint>
#include <memory>

class cls_AgentRequest;
class cls_MementoWrite;
class cls_Uid;

/// Hands a record of the store to an object's DBWrite. The record is asked for only when the object starts to write.
///
/// Ownership:  owns its memento; refers to its parent, the payload holder and the request, which outlive it.
/// Threads:    belongs to one call.
/// Errors:     those of the storage engine.
/// Example:    void Part::DBWrite(const cls_WriteVisitor& visitor) const
///             {
///                 if (visitor.StartWrite(TypeId(), m_uid)) {
///                     visitor.Memento()->WriteString(cls_FieldHandle("label"), m_label);
///                 }
///             }
class VEXOMU_API cls_WriteVisitor
{
public:
    /// The element selector of a visitor that is for no element. Any other value, 0 too, selects one.
    static constexpr std::uint32_t NO_ELEMENT = 1;

    /// On a given record: takes over `memento`.
    explicit cls_WriteVisitor(cls_MementoWrite* memento) noexcept;
    /// On the record that the request makes.
    explicit cls_WriteVisitor(const cls_AgentRequest& request) noexcept;
    /// On the object in a field of the parent's record.
    cls_WriteVisitor(const cls_WriteVisitor& parent, const cls_FieldHandle& field, const cls_PayloadHolder* payload);
    /// On an element of the parent's record.
    cls_WriteVisitor(const cls_WriteVisitor& parent, std::uint32_t element) noexcept;
    cls_WriteVisitor(const cls_WriteVisitor&) = delete;
    cls_WriteVisitor& operator=(const cls_WriteVisitor&) = delete;
    ~cls_WriteVisitor();

    /// Makes the record ready: 1, or 0 when it is refused; then the object writes nothing. A second call goes on with
    /// the same record.
    int StartWrite(std::uint32_t classId, const cls_Uid& uid) const;
    /// Non-zero when the record's class has the field; 0 before StartWrite.
    int FieldIsPresent(const cls_FieldHandle& field) const;
    /// Has the parent's record check that this visitor's field is such a collection. Nothing without a field.
    void CheckCollectionType(cls_CollectionType type) const;

    /// The record to write values to; null until StartWrite succeeded.
    cls_MementoWrite* Memento() const noexcept { return m_memento.get(); }

private:
    std::unique_ptr<cls_MementoWrite> MakeMemento(std::uint32_t classId, const cls_Uid& uid) const;

    const cls_WriteVisitor* m_parent = nullptr;
    cls_FieldHandle m_field;
    std::uint32_t m_element = NO_ELEMENT;
    const cls_PayloadHolder* m_payload = nullptr;
    mutable std::unique_ptr<cls_MementoWrite> m_memento;
    const cls_AgentRequest* m_request = nullptr;
};
