#include "bio_Ifilter.h"

#include "VEXcrt_System.h"
#include "nex_TextException.h"
#include "utl_FilePath.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <ios>
#include <limits>
#include <string>
#include <system_error>

namespace
{
constexpr std::size_t SOURCE_BUFFER_BYTES = 0x10000;
constexpr std::uint64_t UNKNOWN_SIZE = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint32_t MAX_COUNT = 0x7FFFFFFF;
} // namespace

struct bio_Ifilter::Source
{
    std::filebuf file;
    std::streambuf* stream = nullptr;
    cow_String path; // empty behind a std::streambuf
    std::uint64_t size = UNKNOWN_SIZE;
    std::unique_ptr<unsigned char[]> buffer = std::make_unique_for_overwrite<unsigned char[]>(SOURCE_BUFFER_BYTES);

    std::size_t Read();
};

/// Fills the buffer; the bytes got, 0 at the end.
std::size_t bio_Ifilter::Source::Read()
{
    auto* const target = reinterpret_cast<char*>(buffer.get());
    auto wanted = static_cast<std::streamsize>(SOURCE_BUFFER_BYTES);
    if (stream != &file) {
        // A caller's stream may be a connection: take only what is there, or it waits for bytes nobody sends.
        if (stream->sgetc() == std::char_traits<char>::eof()) {
            return 0;
        }
        wanted = std::clamp<std::streamsize>(stream->in_avail(), 1, wanted);
    }
    return static_cast<std::size_t>(std::max<std::streamsize>(stream->sgetn(target, wanted), 0));
}

bio_Ifilter::bio_Ifilter(const void* bytes, std::size_t count)
    : m_begin(static_cast<const unsigned char*>(bytes)), m_cursor(m_begin), m_end(m_begin + count)
{}

bio_Ifilter::bio_Ifilter(std::streambuf& source) : m_source(std::make_unique<Source>())
{
    m_source->stream = &source;
}

bio_Ifilter::bio_Ifilter(const utl_FilePath& path) : m_source(std::make_unique<Source>())
{
    const std::filesystem::path name(path.PathName().view());
    m_source->path = path.PathName();
    m_source->stream = &m_source->file;
    m_source->file.pubsetbuf(nullptr, 0); // this class buffers already
    errno = 0;
    if (!m_source->file.open(name, std::ios::in | std::ios::binary)) {
        Fail(("cannot open: " + VEXCRT::ErrorText(errno)).c_str());
    }
    std::error_code noSize; // a pipe or device has none
    const std::uintmax_t size = std::filesystem::file_size(name, noSize);
    m_source->size = noSize ? UNKNOWN_SIZE : size;
}

bio_Ifilter::~bio_Ifilter() = default;

bool bio_Ifilter::AtEnd()
{
    return m_cursor == m_end && !Refill();
}

bio_Ifilter& bio_Ifilter::operator>>(bool& value)
{
    const std::uint64_t start = Offset();
    unsigned char byte = 0;
    *this >> byte;
    if (byte > 1) {
        FailAt("a bool that is neither 0 nor 1", start);
    }
    value = byte != 0;
    return *this;
}

bio_Ifilter& bio_Ifilter::operator>>(cow_String& text)
{
    const std::uint32_t length = ReadCount(1);
    if (length <= Available()) {
        text = std::string_view(reinterpret_cast<const char*>(m_cursor), length);
        m_cursor += length;
    } else {
        ReadTextSlow(text, length);
    }
    return *this;
}

std::uint32_t bio_Ifilter::ReadCount(std::size_t minItemBytes)
{
    const std::uint64_t start = Offset();
    std::uint32_t count = 0;
    *this >> count;
    if (count > MAX_COUNT || (minItemBytes != 0 && count > Rest() / minItemBytes)) {
        FailAt("a count larger than the rest of the stream", start);
    }
    return count;
}

std::uint32_t bio_Ifilter::SafeReserve(std::uint32_t count, std::size_t itemBytes) const noexcept
{
    const std::uint64_t rest = Rest();
    const std::uint64_t bytes = rest == UNKNOWN_SIZE ? SOURCE_BUFFER_BYTES : rest;
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(count, bytes / std::max<std::size_t>(itemBytes, 1)));
}

void bio_Ifilter::Fail(const char* what) const
{
    FailAt(what, Offset());
}

void bio_Ifilter::FailAt(const char* what, std::uint64_t offset) const
{
    cow_String text;
    if (m_source != nullptr && !m_source->path.IsEmpty()) {
        text = m_source->path + ": ";
    }
    text += what;
    text += " at offset " + std::to_string(offset);
    nex_TextException(text).Throw("platform/utl/impl/bio_Ifilter", __LINE__);
}

/// Bytes left; UNKNOWN_SIZE behind a std::streambuf or a file without a size.
std::uint64_t bio_Ifilter::Rest() const noexcept
{
    if (m_source == nullptr) {
        return Available();
    }
    if (m_source->size == UNKNOWN_SIZE) {
        return UNKNOWN_SIZE;
    }
    const std::uint64_t offset = Offset();
    return offset < m_source->size ? m_source->size - offset : 0;
}

void bio_Ifilter::ReadBytesSlow(void* bytes, std::size_t count)
{
    const std::uint64_t start = Offset();
    auto* target = static_cast<unsigned char*>(bytes);
    for (;;) {
        const std::size_t taken = std::min(count, Available());
        if (taken != 0) {
            std::memcpy(target, m_cursor, taken);
            m_cursor += taken;
            target += taken;
            count -= taken;
        }
        if (count == 0) {
            return;
        }
        if (!Refill()) {
            FailAt("the stream ends too early", start);
        }
    }
}

/// Reads a text that is not in the buffer as a whole, growing it only as its bytes arrive.
void bio_Ifilter::ReadTextSlow(cow_String& text, std::size_t length)
{
    const std::uint64_t start = Offset();
    text.Clear();
    for (;;) {
        const std::size_t taken = std::min(length, Available());
        text.Append(std::string_view(reinterpret_cast<const char*>(m_cursor), taken));
        m_cursor += taken;
        length -= taken;
        if (length == 0) {
            return;
        }
        if (!Refill()) {
            FailAt("the stream ends too early", start);
        }
    }
}

/// Fetches more bytes once all are read; false at the end.
bool bio_Ifilter::Refill()
{
    if (m_source == nullptr) {
        return false;
    }
    m_consumed += static_cast<std::uint64_t>(m_end - m_begin);
    m_begin = m_cursor = m_end = m_source->buffer.get();
    errno = 0;
    try {
        m_end += m_source->Read();
    } catch (const std::ios_base::failure&) {
        Fail(("cannot read: " + VEXCRT::ErrorText(errno)).c_str());
    }
    return m_cursor != m_end;
}

bio_Ifilter::Nested::Nested(bio_Ifilter& in) : m_in(in)
{
    if (m_in.m_nesting == bio_MAX_NESTING) {
        m_in.Fail("objects nested too deeply");
    }
    ++m_in.m_nesting;
}
