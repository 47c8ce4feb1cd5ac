#pragma once

#include "VEXutl_export.h"
#include "thr_RefCount.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iosfwd>
#include <string_view>
#include <utility>

/// Text with an explicit length; zero bytes are allowed in it. The default (null) text is the empty text.
///
/// Ownership:  short texts (up to INLINE_LENGTH bytes) live in the object; longer ones in a counted
///             representation that copies share until one side writes.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: copy O(1); comparison, search and replacement O(length); Append amortised O(bytes appended).
/// Errors:     std::bad_alloc; std::length_error for more than MAX_LENGTH bytes.
/// References: AsCharPtr() and view() die with the next write to this text or its destruction.
class VEXUTL_API cow_String
{
public:
    using cow_Relocatable = cow_String;

    static constexpr std::size_t INLINE_LENGTH = 15;
    static constexpr std::size_t MAX_LENGTH = 0x7FFFFFFF;

    // What is defined below says `inline` here already: a class imported from a DLL may not learn it after a first use.
    cow_String() noexcept { InitEmpty(); }
    /// A null pointer gives the empty text.
    inline cow_String(const char* text);
    inline cow_String(std::string_view text);
    cow_String(const char* bytes, std::size_t length) : cow_String(std::string_view(bytes, length)) {}
    explicit cow_String(char character);
    explicit cow_String(int value);
    explicit cow_String(unsigned int value);
    /// The text that "%.15g" gives in the C locale.
    explicit cow_String(double value);

    inline cow_String(const cow_String& other) noexcept;
    inline cow_String(cow_String&& other) noexcept;
    inline cow_String& operator=(const cow_String& other) noexcept;
    inline cow_String& operator=(cow_String&& other) noexcept;
    inline ~cow_String();

    /// The bytes, followed by a zero byte that does not count.
    inline const char* AsCharPtr() const noexcept;
    std::string_view view() const noexcept { return {AsCharPtr(), size()}; }
    operator std::string_view() const noexcept { return view(); }

    int Length() const noexcept { return static_cast<int>(size()); }
    inline std::size_t size() const noexcept;
    bool IsEmpty() const noexcept { return size() == 0; }
    const char* begin() const noexcept { return AsCharPtr(); }
    const char* end() const noexcept { return AsCharPtr() + size(); }

    /// The byte at `index`; outside the text an assertion is reported and the result is a zero byte.
    char operator[](int index) const;

    /// The bytes from `from` up to but not including `to`, both clamped to the text; empty when they cross.
    cow_String Substring(int from, int to) const;

    /// Position of the first occurrence of `text` at or after `from`, or -1.
    int Find(std::string_view text, int from = 0) const noexcept;
    /// Position of the last occurrence of `text`, or -1.
    int FindLast(std::string_view text) const noexcept;
    bool StartsWith(std::string_view text) const noexcept { return view().starts_with(text); }
    bool EndsWith(std::string_view text) const noexcept { return view().ends_with(text); }
    bool Contains(std::string_view text) const noexcept { return Find(text) >= 0; }

    /// Negative, 0 or positive: order by unsigned bytes, a prefix first.
    int Compare(std::string_view other) const noexcept { return view().compare(other); }

    void Append(std::string_view text);
    void Append(char character) { Append(std::string_view(&character, 1)); }
    cow_String& operator+=(std::string_view text)
    {
        Append(text);
        return *this;
    }

    /// Replaces the byte at `index`; outside the text an assertion is reported and nothing changes.
    void Set(int index, char character);
    inline void Clear() noexcept;
    /// Makes room for `length` bytes in all, so that appending up to there allocates at most once.
    void Reserve(std::size_t length);

    /// Replaces the first occurrence of `from` by `to`; false when there is none.
    bool ReplaceFirst(std::string_view from, std::string_view to);
    /// Replaces every occurrence of `from`, resuming after each replacement; returns how many. An empty
    /// `from` occurs nowhere.
    int ReplaceAll(std::string_view from, std::string_view to);

    /// Removes leading, trailing or both kinds of bytes that are among `characters`.
    void TrimLeft(std::string_view characters);
    void TrimRight(std::string_view characters);
    void Trim(std::string_view characters);

    /// True when both share one representation or are the same short text: what a test of sharing looks at.
    bool SharesWith(const cow_String& other) const noexcept;

    /// The first INLINE_LENGTH bytes and the length (one number for all above INLINE_LENGTH) packed into two integers.
    /// Texts order as their ranks do; of equal rank are equal texts and some that are both longer than INLINE_LENGTH.
    struct Rank
    {
        std::uint64_t high;
        std::uint64_t low;

        bool IsOfLongText() const noexcept { return (low & 0xFF) > INLINE_LENGTH; }
        friend bool operator==(const Rank&, const Rank&) noexcept = default;
        friend std::strong_ordering operator<=>(const Rank&, const Rank&) noexcept = default;
    };
    Rank GetRank() const noexcept { return IsHeap() ? HeapRank() : InlineRank(); }
    static Rank RankOf(std::string_view text) noexcept;
    /// Whether this is the text of that rank, which is not that of a long one; never when it has room for a longer one.
    bool IsShortText(const Rank& rank) const noexcept
    {
        std::uint64_t words[2];
        std::memcpy(words, m_buffer, sizeof words);
        return ((words[0] ^ __builtin_bswap64(rank.high)) | (words[1] ^ __builtin_bswap64(rank.low ^ INLINE_LENGTH))) ==
               0;
    }

    // Friends, so that two string_views or literals never meet them.
    friend bool operator==(const cow_String& left, const cow_String& right) noexcept
    {
        // Equal buffers are one short text, or one shared long one.
        return std::memcmp(left.m_buffer, right.m_buffer, sizeof left.m_buffer) == 0 ||
               ((left.IsHeap() || right.IsHeap()) && left.EqualsSlowly(right));
    }
    friend bool operator==(const cow_String& left, std::string_view right) noexcept { return left.view() == right; }
    friend bool operator==(const cow_String& left, const char* right) noexcept
    {
        return left.view() == std::string_view(right);
    }
    friend std::strong_ordering operator<=>(const cow_String& left, const cow_String& right) noexcept
    {
        return left.IsHeap() || right.IsHeap() ? left.view() <=> right.view()
                                               : left.InlineRank() <=> right.InlineRank();
    }
    friend std::strong_ordering operator<=>(const cow_String& left, std::string_view right) noexcept
    {
        return left.view() <=> right;
    }
    friend std::strong_ordering operator<=>(const cow_String& left, const char* right) noexcept
    {
        return left.view() <=> std::string_view(right);
    }

private:
    struct Rep
    {
        thr_RefCount holders{1};
        std::uint32_t length = 0;
        std::uint32_t capacity = 0; // bytes that fit, the final zero byte not counted
        char* bytes() noexcept { return reinterpret_cast<char*>(this + 1); }
    };

    // Last byte of the buffer: INLINE_LENGTH - length for a short text (so that it ends a text of 15 bytes with a zero
    // byte), HEAP_MARK when the first bytes hold a Rep pointer. Invariant: wherever a text of up to 15 bytes stands, the
    // bytes up to the 15th are 0 behind it.
    static constexpr unsigned char HEAP_MARK = 0xFF;

    bool IsHeap() const noexcept { return static_cast<unsigned char>(m_buffer[INLINE_LENGTH]) == HEAP_MARK; }
    Rep* HeapRep() const noexcept
    {
        Rep* rep;
        std::memcpy(&rep, m_buffer, sizeof rep);
        return rep;
    }
    void InitEmpty() noexcept { InitWords(0, 0, 0); }
    /// The short text whose bytes are those of the two words, and 0 behind them.
    void InitWords(std::uint64_t first, std::uint64_t last, std::size_t length) noexcept
    {
        const std::uint64_t words[2] = {first, last | std::uint64_t{INLINE_LENGTH - length} << 56};
        std::memcpy(m_buffer, words, sizeof words);
    }
    template <class Word> static std::uint64_t Load(const char* bytes) noexcept
    {
        Word word;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }
    Rank InlineRank() const noexcept
    {
        // The last byte becomes the length: for up to 15, 15 - n is 15 ^ n.
        const Rank rank = PackedBytes(m_buffer);
        return {rank.high, rank.low ^ INLINE_LENGTH};
    }
    Rank HeapRank() const noexcept
    {
        Rep* const rep = HeapRep();
        const Rank rank = PackedBytes(rep->bytes());
        return {rank.high, (rank.low & ~std::uint64_t{0xFF}) | std::min<std::uint64_t>(rep->length, INLINE_LENGTH + 1)};
    }
    /// The first 16 bytes as numbers that order as the bytes do.
    static Rank PackedBytes(const char* bytes) noexcept
    {
        static_assert(std::endian::native == std::endian::little && INLINE_LENGTH == 15);
        std::uint64_t words[2];
        std::memcpy(words, bytes, sizeof words);
        return {__builtin_bswap64(words[0]), __builtin_bswap64(words[1])};
    }
    static Rep* NewRep(std::size_t capacity);
    void InitRoom(std::size_t capacity);
    void InitCopyOf(std::string_view text);
    void InitShortCopyOf(std::string_view text) noexcept;
    void InitLongCopyOf(std::string_view text);
    void DropHeap() noexcept;
    void AssignSlowly(cow_String other) noexcept;
    bool EqualsSlowly(const cow_String& other) const noexcept;
    void ClearHeap() noexcept;

    /// True when a text of `length` bytes can be written over this one: nobody shares it, and there is room.
    bool FitsInPlace(std::size_t length) const noexcept;
    char* WritableBytes() noexcept;
    void SetLength(std::size_t length) noexcept;
    void NoteDetach() const noexcept;
    /// Reduces the text to the bytes from `from` up to but not including `to`.
    void Keep(std::size_t from, std::size_t to);

    alignas(void*) char m_buffer[INLINE_LENGTH + 1];
};

inline cow_String::cow_String(const cow_String& other) noexcept
{
    std::memcpy(m_buffer, other.m_buffer, sizeof m_buffer);
    if (IsHeap()) {
        HeapRep()->holders.Raise();
    }
}

inline cow_String::cow_String(cow_String&& other) noexcept
{
    std::memcpy(m_buffer, other.m_buffer, sizeof m_buffer);
    other.InitEmpty();
}

// Short texts are made and assigned in place without a call: a method's name and keywords are short literals, of which
// the compiler then leaves two words. Stored as such they can be read at once, which bytes stored one by one cannot.

inline void cow_String::InitShortCopyOf(std::string_view text) noexcept
{
    const char* const bytes = text.data();
    const std::size_t length = text.size();
    const auto byteAt = [&](std::size_t i) { return Load<unsigned char>(bytes + i) << 8 * i; };
    if (length > 8) {
        const std::uint64_t tail = Load<std::uint64_t>(bytes + length - 8);
        InitWords(Load<std::uint64_t>(bytes), tail >> 8 * (16 - length), length);
    } else if (length >= 4) {
        const std::uint64_t tail = Load<std::uint32_t>(bytes + length - 4);
        InitWords(Load<std::uint32_t>(bytes) | tail << 8 * (length - 4), 0, length);
    } else if (length != 0) {
        InitWords(byteAt(0) | byteAt(length / 2) | byteAt(length - 1), 0, length);
    } else {
        InitEmpty();
    }
}

inline void cow_String::InitCopyOf(std::string_view text)
{
    if (text.size() <= INLINE_LENGTH) {
        InitShortCopyOf(text);
    } else {
        InitLongCopyOf(text);
    }
}

inline cow_String::cow_String(const char* text)
{
    InitCopyOf(text != nullptr ? std::string_view(text) : std::string_view());
}

inline cow_String::cow_String(std::string_view text)
{
    InitCopyOf(text);
}

inline cow_String& cow_String::operator=(const cow_String& other) noexcept
{
    if (IsHeap() || other.IsHeap()) {
        AssignSlowly(other);
    } else {
        std::memmove(m_buffer, other.m_buffer, sizeof m_buffer);
    }
    return *this;
}

inline cow_String& cow_String::operator=(cow_String&& other) noexcept
{
    if (IsHeap() || other.IsHeap()) {
        AssignSlowly(std::move(other));
    } else {
        std::memmove(m_buffer, other.m_buffer, sizeof m_buffer);
    }
    return *this;
}

inline void cow_String::Clear() noexcept
{
    if (IsHeap()) {
        ClearHeap();
    } else {
        InitEmpty();
    }
}

inline cow_String::~cow_String()
{
    if (IsHeap()) {
        DropHeap();
    }
}

inline const char* cow_String::AsCharPtr() const noexcept
{
    return IsHeap() ? HeapRep()->bytes() : m_buffer;
}

inline std::size_t cow_String::size() const noexcept
{
    return IsHeap() ? HeapRep()->length : INLINE_LENGTH - static_cast<unsigned char>(m_buffer[INLINE_LENGTH]);
}

VEXUTL_API cow_String operator+(const cow_String& left, std::string_view right);
VEXUTL_API cow_String operator+(const cow_String& left, const cow_String& right);
VEXUTL_API cow_String operator+(const cow_String& left, const char* right);
VEXUTL_API cow_String operator+(const char* left, const cow_String& right);

VEXUTL_API std::ostream& operator<<(std::ostream& out, const cow_String& text);

template <> struct std::hash<cow_String>
{
    std::size_t operator()(const cow_String& text) const noexcept { return std::hash<std::string_view>()(text.view()); }
};
