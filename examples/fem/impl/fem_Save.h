#pragma once

#include "cls_ArrayPrim.h"
#include "cls_FieldHandle.h"
#include "cls_WriteVisitor.h"
#include "nex_Exception.h"

#include <functional>
#include <memory>
#include <vector>

/// One save of a session: puts persistent arrays into the file, and sees to it that they page from the right one when it
/// is over. An array pages from the file in which it was stored first; for a save to another file a copy is stored, and
/// the array takes over from the copy once it is durable.
///
/// Ownership:  refers to the arrays until the end of the save.
class fem_Save
{
public:
    /// `isOtherFile`: not the one from which the arrays page that do so.
    explicit fem_Save(bool isOtherFile) noexcept : m_isOtherFile(isOtherFile) {}

    /// Writes the array to the field of the object that `owner` writes.
    template <class Array> void Write(const cls_WriteVisitor& owner, const cls_FieldHandle& field, Array& array);

    /// The save is durable.
    void Commit()
    {
        for (const auto& takeOver : m_takeOvers) {
            takeOver();
        }
    }

private:
    template <class T> static void AppendAll(const cls_ArrayPrim<T>& from, cls_ArrayPrim<T>& to)
    {
        for (int i = 0; i < from.Size(); ++i) {
            to.Append(from.ConstGet(i));
        }
    }

    bool m_isOtherFile;
    std::vector<std::function<void()>> m_takeOvers; // each has a copy
};

template <class Array> void fem_Save::Write(const cls_WriteVisitor& owner, const cls_FieldHandle& field, Array& array)
{
    const cls_WriteVisitor visitor(owner, field, nullptr);
    if (!m_isOtherFile) {
        array.DBWrite(visitor);
        return;
    }
    auto copy = std::make_shared<Array>();
    if constexpr (requires { array.RowLength(); }) {
        copy->SetRowLength(array.RowLength());
    }
    m_takeOvers.push_back([&array, copy] { array = *copy; });
    copy->DBWrite(visitor);
    try {
        array.Flush();
    } catch (const nex_Exception&) {
        array.TakeIn(); // its file takes nothing more, which may be why this save goes elsewhere, but can be read
    }
    AppendAll(array, *copy);
}
