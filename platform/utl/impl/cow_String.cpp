#include "cow_String.h"

#include "VEXCRT.h"
#include "cow_CloneCount.h"
#include "utl_BlockPool.h"

#include <algorithm>
#include <charconv>
#include <new>
#include <ostream>
#include <stdexcept>
#include <utility>

namespace
{
constexpr const char* SOURCE = "platform/utl/impl/cow_String";
constexpr std::size_t BLOCK_BYTES = 16; // representations are multiples of this, so that growing in small steps is rare

/// Text of a number, alive for the expression that uses it.
class NumberText
{
public:
    template <class... Format>
    explicit NumberText(Format... valueAndFormat)
        : m_end(std::to_chars(m_text, m_text + sizeof m_text, valueAndFormat...).ptr)
    {}
    operator std::string_view() const { return {m_text, static_cast<std::size_t>(m_end - m_text)}; }

private:
    char m_text[32];
    char* m_end;
};

/// Room for texts that grow byte by byte: never less than asked for, at least half as much again as there is.
std::size_t GrownCapacity(std::size_t length, std::size_t present)
{
    return std::max(length, std::min(present + present / 2, cow_String::MAX_LENGTH));
}
} // namespace

// Defined for users of the DLL who bind references to them.
constexpr std::size_t cow_String::INLINE_LENGTH;
constexpr std::size_t cow_String::MAX_LENGTH;

cow_String::Rep* cow_String::NewRep(std::size_t capacity)
{
    if (capacity > MAX_LENGTH) {
        throw std::length_error("cow_String: a text longer than 2147483647 bytes");
    }
    const std::size_t bytes = (sizeof(Rep) + capacity + BLOCK_BYTES) / BLOCK_BYTES * BLOCK_BYTES;
    Rep* const rep = ::new (utl_BlockPool::Allocate(bytes)) Rep;
    rep->capacity = static_cast<std::uint32_t>(bytes - sizeof(Rep) - 1);
    std::memset(rep->bytes(), 0, INLINE_LENGTH + 1);
    return rep;
}

void cow_String::DropHeap() noexcept
{
    Rep* const rep = HeapRep();
    if (rep->holders.Lower()) {
        const std::size_t bytes = sizeof(Rep) + rep->capacity + 1;
        rep->~Rep();
        utl_BlockPool::Free(rep, bytes);
    }
}

void cow_String::InitRoom(std::size_t capacity)
{
    if (capacity <= INLINE_LENGTH) {
        InitEmpty();
        return;
    }
    Rep* const rep = NewRep(capacity);
    std::memcpy(m_buffer, &rep, sizeof rep);
    m_buffer[INLINE_LENGTH] = static_cast<char>(HEAP_MARK);
}

void cow_String::InitLongCopyOf(std::string_view text)
{
    InitRoom(text.size());
    std::memcpy(WritableBytes(), text.data(), text.size());
    SetLength(text.size());
}

cow_String::cow_String(char character)
{
    InitCopyOf({&character, 1});
}

cow_String::cow_String(int value)
{
    InitCopyOf(NumberText(value));
}

cow_String::cow_String(unsigned int value)
{
    InitCopyOf(NumberText(value));
}

cow_String::cow_String(double value)
{
    InitCopyOf(NumberText(value, std::chars_format::general, 15));
}

void cow_String::AssignSlowly(cow_String other) noexcept
{
    std::swap_ranges(m_buffer, m_buffer + sizeof m_buffer, other.m_buffer);
}

bool cow_String::EqualsSlowly(const cow_String& other) const noexcept
{
    return view() == other.view();
}

char cow_String::operator[](int index) const
{
    if (index < 0 || index >= Length()) {
        VEXCRT::_assert("index >= 0 && index < Length()", SOURCE, __LINE__);
        return '\0';
    }
    return AsCharPtr()[index];
}

cow_String cow_String::Substring(int from, int to) const
{
    const int first = std::max(from, 0);
    const int last = std::min(to, Length());
    if (first >= last) {
        return {};
    }
    if (first == 0 && last == Length()) {
        return *this;
    }
    return view().substr(static_cast<std::size_t>(first), static_cast<std::size_t>(last - first));
}

int cow_String::Find(std::string_view text, int from) const noexcept
{
    const std::size_t found = view().find(text, static_cast<std::size_t>(std::max(from, 0)));
    return found == std::string_view::npos ? -1 : static_cast<int>(found);
}

int cow_String::FindLast(std::string_view text) const noexcept
{
    const std::size_t found = view().rfind(text);
    return found == std::string_view::npos ? -1 : static_cast<int>(found);
}

bool cow_String::FitsInPlace(std::size_t length) const noexcept
{
    if (!IsHeap()) {
        return length <= INLINE_LENGTH;
    }
    const Rep* const rep = HeapRep();
    return length <= rep->capacity && rep->holders.IsUnique();
}

char* cow_String::WritableBytes() noexcept
{
    return IsHeap() ? HeapRep()->bytes() : m_buffer;
}

void cow_String::SetLength(std::size_t length) noexcept
{
    char* const bytes = WritableBytes();
    if (length < INLINE_LENGTH) {
        std::memset(bytes + length, 0, INLINE_LENGTH - length);
    }
    if (IsHeap()) {
        HeapRep()->length = static_cast<std::uint32_t>(length);
        bytes[length] = '\0';
    } else {
        bytes[INLINE_LENGTH] = static_cast<char>(INLINE_LENGTH - length);
    }
}

void cow_String::NoteDetach() const noexcept
{
    if (IsHeap() && !HeapRep()->holders.IsUnique()) {
        cow_NoteClone<cow_String>();
    }
}

void cow_String::Append(std::string_view text)
{
    if (text.empty()) {
        return;
    }
    const std::size_t present = size();
    if (text.size() > MAX_LENGTH - present) {
        NewRep(MAX_LENGTH + 1); // throws
    }
    const std::size_t length = present + text.size();
    if (FitsInPlace(length)) {
        // `text` may be part of this text, but then lies before the bytes written here.
        std::memcpy(WritableBytes() + present, text.data(), text.size());
        SetLength(length);
        return;
    }
    NoteDetach();
    cow_String grown;
    grown.InitRoom(GrownCapacity(length, present));
    std::memcpy(grown.WritableBytes(), AsCharPtr(), present);
    std::memcpy(grown.WritableBytes() + present, text.data(), text.size());
    grown.SetLength(length);
    *this = std::move(grown);
}

void cow_String::Set(int index, char character)
{
    if (index < 0 || index >= Length()) {
        VEXCRT::_assert("index >= 0 && index < Length()", SOURCE, __LINE__);
        return;
    }
    if (!FitsInPlace(size())) {
        NoteDetach();
        *this = cow_String(view());
    }
    WritableBytes()[index] = character;
}

void cow_String::ClearHeap() noexcept
{
    if (FitsInPlace(0)) {
        SetLength(0);
    } else {
        *this = cow_String();
    }
}

void cow_String::Reserve(std::size_t length)
{
    if (length <= size() || FitsInPlace(length)) {
        return;
    }
    NoteDetach();
    cow_String roomy;
    roomy.InitRoom(length);
    roomy.Append(view());
    *this = std::move(roomy);
}

bool cow_String::ReplaceFirst(std::string_view from, std::string_view to)
{
    const std::size_t found = view().find(from);
    if (found == std::string_view::npos) {
        return false;
    }
    cow_String replaced;
    replaced.Append(view().substr(0, found));
    replaced.Append(to);
    replaced.Append(view().substr(found + from.size()));
    *this = std::move(replaced);
    return true;
}

int cow_String::ReplaceAll(std::string_view from, std::string_view to)
{
    if (from.empty()) {
        return 0;
    }
    const std::string_view text = view();
    cow_String replaced;
    std::size_t kept = 0;
    int count = 0;
    for (std::size_t found; (found = text.find(from, kept)) != std::string_view::npos; kept = found + from.size()) {
        replaced.Append(text.substr(kept, found - kept));
        replaced.Append(to);
        ++count;
    }
    if (count != 0) {
        replaced.Append(text.substr(kept));
        *this = std::move(replaced);
    }
    return count;
}

void cow_String::Keep(std::size_t from, std::size_t to)
{
    const std::size_t length = to - from;
    if (length == size()) {
        return;
    }
    if (!FitsInPlace(length)) {
        *this = cow_String(view().substr(from, length));
        return;
    }
    std::memmove(WritableBytes(), AsCharPtr() + from, length);
    SetLength(length);
}

void cow_String::TrimLeft(std::string_view characters)
{
    Keep(std::min(view().find_first_not_of(characters), size()), size());
}

void cow_String::TrimRight(std::string_view characters)
{
    Keep(0, view().find_last_not_of(characters) + 1);
}

void cow_String::Trim(std::string_view characters)
{
    TrimRight(characters);
    TrimLeft(characters);
}

cow_String::Rank cow_String::RankOf(std::string_view text) noexcept
{
    char bytes[INLINE_LENGTH + 1] = {};
    text.copy(bytes, INLINE_LENGTH);
    const Rank rank = PackedBytes(bytes);
    return {rank.high, rank.low | std::min(text.size(), INLINE_LENGTH + 1)};
}

bool cow_String::SharesWith(const cow_String& other) const noexcept
{
    return IsHeap() && other.IsHeap() ? HeapRep() == other.HeapRep()
                                      : IsHeap() == other.IsHeap() && view() == other.view();
}

namespace
{
cow_String Joined(std::string_view left, std::string_view right)
{
    cow_String joined;
    joined.Reserve(left.size() + right.size());
    joined.Append(left);
    joined.Append(right);
    return joined;
}
} // namespace

cow_String operator+(const cow_String& left, std::string_view right)
{
    return Joined(left, right);
}

cow_String operator+(const cow_String& left, const cow_String& right)
{
    return Joined(left, right);
}

cow_String operator+(const cow_String& left, const char* right)
{
    return Joined(left, right);
}

cow_String operator+(const char* left, const cow_String& right)
{
    return Joined(left, right);
}

std::ostream& operator<<(std::ostream& out, const cow_String& text)
{
    return out << text.view();
}
