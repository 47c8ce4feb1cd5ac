#pragma once

#include "cls_ArrayPrim.h"
#include "cls_FieldHandle.h"
#include "cls_WriteVisitor.h"

#include <functional>
#include <memory>
#include <vector>

/// One save of a session: puts persistent arrays into the file, and sees to it that they go on in the right place when it
/// is over.
///
/// A stored array pages: it leaves memory, and comes back block by block from the file. The save therefore works on a
/// copy, which shares the blocks, and the array takes over from the copy at the commit: one that was all in memory still
/// is when the save fails.
///
/// Ownership:  refers to the arrays until the end of the save.
class fem_Save
{
public:
    /// `isOtherFile`: the arrays that page do so from another file than the one that is written.
    explicit fem_Save(bool isOtherFile) noexcept : m_isOtherFile(isOtherFile) {}

    /// Writes the array to the field of the object that `owner` writes.
    template <class Array> void Write(const cls_WriteVisitor& owner, const cls_FieldHandle& field, Array& array);

    /// The save is durable: the arrays page from its file.
    void Commit()
    {
        for (const Written& written : m_written) {
            written.takeOver();
        }
    }
    /// Before the rollback of a save that failed.
    void DropCopies()
    {
        for (Written& written : m_written) {
            written.takeOver = nullptr;
        }
    }
    /// After it. What an array had moved to the file since the last save is lost: it is as it was then.
    void Restore()
    {
        for (const Written& written : m_written) {
            written.restore();
        }
    }

private:
    struct Written
    {
        std::function<void()> takeOver; // has the copy
        std::function<void()> restore;
    };

    template <class T> static void AppendAll(const cls_ArrayPrim<T>& from, cls_ArrayPrim<T>& to)
    {
        for (int i = 0; i < from.Size(); ++i) {
            to.Append(from.ConstGet(i));
        }
    }

    bool m_isOtherFile;
    std::vector<Written> m_written;
};

template <class Array> void fem_Save::Write(const cls_WriteVisitor& owner, const cls_FieldHandle& field, Array& array)
{
    auto copy = std::make_shared<Array>();
    if (!m_isOtherFile) {
        *copy = array;
    } else if constexpr (requires { array.RowLength(); }) {
        copy->SetRowLength(array.RowLength());
    }
    m_written.push_back({[&array, copy] { array = *copy; }, [&array] { array.Snap(); }});
    copy->DBWrite(cls_WriteVisitor(owner, field, nullptr));
    if (m_isOtherFile) {
        AppendAll(array, *copy);
        copy->Flush();
    }
}
