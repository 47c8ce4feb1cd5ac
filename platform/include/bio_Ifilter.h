#pragma once

#include "VEXutl_export.h"
#include "bio_Ofilter.h"
#include "cow_String.h"

#include <concepts>
#include <cstdint>
#include <cstring>
#include <memory>
#include <streambuf>

class utl_FilePath;

/// Reads what bio_Ofilter writes; its header has the table of encodings.
///
/// The reader trusts nothing: a truncated stream, a length or count that the rest of the input cannot hold, an unknown
/// or unrelated type id, a bool other than 0 and 1, and nesting deeper than bio_MAX_NESTING each throw
/// nex_TextException with the byte offset. No allocation is sized from unchecked input, so a damaged stream never costs
/// more memory than a small multiple of its size.
///
/// Ownership:  refers to the caller's bytes or std::streambuf (from which it reads ahead what is there without waiting);
///             owns the file it opened.
/// Threads:    one thread at a time.
/// Errors:     nex_TextException "<what> at offset <bytes>", for a file "<path>: <what> at offset <bytes>"; the value
///             being read is then unspecified but safe to delete.
class VEXUTL_API bio_Ifilter
{
public:
    /// From memory, which must outlive the reader.
    bio_Ifilter(const void* bytes, std::size_t count);
    explicit bio_Ifilter(const utl_FilePath& path);
    explicit bio_Ifilter(std::streambuf& source);
    bio_Ifilter(const bio_Ifilter&) = delete;
    bio_Ifilter& operator=(const bio_Ifilter&) = delete;
    ~bio_Ifilter();

    /// Bytes read so far.
    std::uint64_t Offset() const noexcept { return m_consumed + static_cast<std::uint64_t>(m_cursor - m_begin); }
    /// True when no byte is left.
    bool AtEnd();

    void ReadBytes(void* bytes, std::size_t count)
    {
        if (count > Available()) {
            ReadBytesSlow(bytes, count);
            return;
        }
        if (count != 0) {
            std::memcpy(bytes, m_cursor, count);
            m_cursor += count;
        }
    }

    template <class T>
        requires std::same_as<T, char> || std::same_as<T, signed char> || std::same_as<T, unsigned char> ||
                 std::same_as<T, std::int16_t> || std::same_as<T, std::uint16_t> || std::same_as<T, std::int32_t> ||
                 std::same_as<T, std::uint32_t> || std::same_as<T, std::int64_t> || std::same_as<T, std::uint64_t> ||
                 std::same_as<T, float> || std::same_as<T, double>
    bio_Ifilter& operator>>(T& value)
    {
        ReadBytes(&value, sizeof value);
        return *this;
    }
    bio_Ifilter& operator>>(bool& value);
    bio_Ifilter& operator>>(cow_String& text);

    /// Reads a 32-bit count of items of at least `minItemBytes` bytes each, and refuses one that the rest of the input
    /// cannot hold. Behind a std::streambuf the rest is unknown: then the count is only bounded by 0x7FFFFFFF, and the
    /// caller grows its container as items arrive (see GrowthStep).
    std::uint32_t ReadCount(std::size_t minItemBytes);
    /// How many of `count` items may be reserved at once without trusting the input.
    std::uint32_t SafeReserve(std::uint32_t count, std::size_t itemBytes) const noexcept;

    /// Throws nex_TextException "<what> at offset <Offset()>".
    [[noreturn]] void Fail(const char* what) const;
    /// The same with the offset at which the bad item started.
    [[noreturn]] void FailAt(const char* what, std::uint64_t offset) const;

    /// Counts one level of nesting for its lifetime; the constructor throws when it is one too many.
    class VEXUTL_API Nested
    {
    public:
        explicit Nested(bio_Ifilter& in);
        ~Nested() { --m_in.m_nesting; }
        Nested(const Nested&) = delete;
        Nested& operator=(const Nested&) = delete;

    private:
        bio_Ifilter& m_in;
    };

private:
    struct Source; // the file or std::streambuf behind the buffer; absent for memory

    std::uint64_t Rest() const noexcept;
    std::size_t Available() const noexcept { return static_cast<std::size_t>(m_end - m_cursor); }
    void ReadBytesSlow(void* bytes, std::size_t count);
    void ReadTextSlow(cow_String& text, std::size_t length);
    bool Refill();

    const unsigned char* m_begin = nullptr;
    const unsigned char* m_cursor = nullptr;
    const unsigned char* m_end = nullptr;
    std::uint64_t m_consumed = 0; // bytes before m_begin
    int m_nesting = 0;
    std::unique_ptr<Source> m_source;
};
