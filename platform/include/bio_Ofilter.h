#pragma once

#include "VEXutl_export.h"
#include "cow_String.h"

#include <bit>
#include <concepts>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <streambuf>

class utl_FilePath;

/// Deepest nesting of objects inside objects that a stream takes; deeper values are refused when written and when read.
inline constexpr int bio_MAX_NESTING = 200;

/// Writes values as a little-endian byte stream, to memory, a file or a std::streambuf.
///
///     bool                       1 byte, 0 or 1
///     char, signed/unsigned      1 byte
///     16-, 32-, 64-bit integers  2, 4, 8 bytes
///     float, double              4, 8 bytes, IEEE 754
///     text (cow_String)          32-bit length, the bytes
///     list, array                32-bit count, the items
///     map                        32-bit count, then key and value of each entry in key order
///     2-D array                  32-bit rows, 32-bit columns, the items row by row
///     complex                    1 byte form (0 Cartesian, 1 polar), two doubles
///     object                     32-bit type id, the class's data
///     null object                32-bit 0
///
/// Ownership:  owns its buffer and the file it opened; refers to a std::streambuf of the caller.
/// Threads:    one thread at a time.
/// Errors:     nex_TextException when the file or std::streambuf takes no more bytes (from then on every call that
///             hands bytes over throws again), or nesting is deeper than bio_MAX_NESTING. Close() reports what is still
///             unwritten; the destructor writes it but cannot report.
class VEXUTL_API bio_Ofilter
{
public:
    /// To memory; read it with Data() and Size().
    bio_Ofilter();
    /// To a file, created or truncated.
    explicit bio_Ofilter(const utl_FilePath& path);
    explicit bio_Ofilter(std::streambuf& sink);
    bio_Ofilter(const bio_Ofilter&) = delete;
    bio_Ofilter& operator=(const bio_Ofilter&) = delete;
    ~bio_Ofilter();

    /// Hands buffered bytes to the file or std::streambuf.
    void Flush();
    /// Flush, then closes the file; nothing may be written after it.
    void Close();

    /// Bytes written so far.
    std::uint64_t Offset() const noexcept { return m_flushed + Buffered(); }

    /// The bytes of a memory stream; valid until the next write. Empty for the other kinds.
    const unsigned char* Data() const noexcept;
    std::size_t Size() const noexcept;

    void WriteBytes(const void* bytes, std::size_t count)
    {
        if (count > static_cast<std::size_t>(m_end - m_cursor)) {
            WriteBytesSlow(bytes, count);
            return;
        }
        if (count != 0) {
            std::memcpy(m_cursor, bytes, count);
            m_cursor += count;
        }
    }

    // Arithmetic types only, and each as itself: a pointer must never turn into a bool on its way here.
    template <class T>
        requires std::same_as<T, bool> || std::same_as<T, char> || std::same_as<T, signed char> ||
                 std::same_as<T, unsigned char> || std::same_as<T, std::int16_t> || std::same_as<T, std::uint16_t> ||
                 std::same_as<T, std::int32_t> || std::same_as<T, std::uint32_t> || std::same_as<T, std::int64_t> ||
                 std::same_as<T, std::uint64_t> || std::same_as<T, float> || std::same_as<T, double>
    bio_Ofilter& operator<<(T value)
    {
        static_assert(std::endian::native == std::endian::little, "the stream's byte order is the machine's");
        static_assert(sizeof(bool) == 1);
        WriteBytes(&value, sizeof value);
        return *this;
    }

    bio_Ofilter& operator<<(const cow_String& text)
    {
        *this << static_cast<std::uint32_t>(text.size());
        WriteBytes(text.AsCharPtr(), text.size());
        return *this;
    }
    bio_Ofilter& operator<<(const char* text) { return *this << cow_String(text); }

    /// Counts one level of nesting for its lifetime; the constructor throws when it is one too many.
    class VEXUTL_API Nested
    {
    public:
        explicit Nested(bio_Ofilter& out);
        ~Nested() { --m_out.m_nesting; }
        Nested(const Nested&) = delete;
        Nested& operator=(const Nested&) = delete;

    private:
        bio_Ofilter& m_out;
    };

private:
    struct Sink; // the file or std::streambuf behind the buffer; absent for memory

    std::size_t Buffered() const noexcept { return static_cast<std::size_t>(m_cursor - m_buffer.get()); }
    void WriteBytesSlow(const void* bytes, std::size_t count);
    void Grow(std::size_t count);
    void Send(const void* bytes, std::size_t count);
    void RequireOpen() const;
    [[noreturn]] void Fail(const char* what) const;

    std::unique_ptr<unsigned char, decltype(&std::free)> m_buffer{nullptr, &std::free};
    unsigned char* m_cursor = nullptr;
    unsigned char* m_end = nullptr;
    std::uint64_t m_flushed = 0;
    int m_nesting = 0;
    std::unique_ptr<Sink> m_sink;
};
