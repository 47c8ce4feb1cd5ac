#include "bio_Ofilter.h"

#include "VEXcrt_System.h"
#include "nex_TextException.h"
#include "utl_FilePath.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <new>
#include <string>

namespace
{
constexpr std::size_t FIRST_CAPACITY = 256;
constexpr std::size_t SINK_BUFFER_BYTES = 0x10000;
} // namespace

struct bio_Ofilter::Sink
{
    std::filebuf file;
    std::streambuf* stream = nullptr; // null once closed
    cow_String path;                  // empty behind a std::streambuf
    int error = 0;                    // the system's code for the last failure, 0 when it gave none
    bool failed = false;
};

bio_Ofilter::bio_Ofilter() = default;

bio_Ofilter::bio_Ofilter(std::streambuf& sink) : m_sink(std::make_unique<Sink>())
{
    m_sink->stream = &sink;
    Grow(SINK_BUFFER_BYTES);
}

bio_Ofilter::bio_Ofilter(const utl_FilePath& path) : m_sink(std::make_unique<Sink>())
{
    m_sink->path = path.PathName();
    m_sink->file.pubsetbuf(nullptr, 0); // this class buffers already
    errno = 0;
    if (!m_sink->file.open(std::filesystem::path(path.PathName().view()),
                           std::ios::out | std::ios::binary | std::ios::trunc)) {
        m_sink->error = errno;
        Fail("cannot create");
    }
    m_sink->stream = &m_sink->file;
    Grow(SINK_BUFFER_BYTES);
}

bio_Ofilter::~bio_Ofilter()
{
    if (m_sink != nullptr && m_sink->stream != nullptr && !m_sink->failed) {
        try {
            Flush();
        } catch (const std::exception&) {
            // Close() is the call that reports; here the bytes are lost, as the class says.
        }
    }
}

void bio_Ofilter::Flush()
{
    if (m_sink == nullptr) {
        return;
    }
    RequireOpen();
    const std::size_t count = Buffered();
    m_cursor = m_buffer.get();
    Send(m_buffer.get(), count);
    errno = 0;
    if (m_sink->stream->pubsync() != 0) {
        m_sink->error = errno;
        m_sink->failed = true;
        Fail("cannot write");
    }
}

void bio_Ofilter::Close()
{
    if (m_sink == nullptr || m_sink->stream == nullptr) {
        return;
    }
    Flush();
    m_sink->stream = nullptr;
    m_end = m_cursor; // the next write goes the slow way and is refused
    errno = 0;
    if (m_sink->file.is_open() && m_sink->file.close() == nullptr) {
        m_sink->error = errno;
        Fail("cannot close");
    }
}

const unsigned char* bio_Ofilter::Data() const noexcept
{
    return m_sink == nullptr ? m_buffer.get() : nullptr;
}

std::size_t bio_Ofilter::Size() const noexcept
{
    return m_sink == nullptr ? Buffered() : 0;
}

void bio_Ofilter::WriteBytesSlow(const void* bytes, std::size_t count)
{
    if (m_sink == nullptr) {
        Grow(count);
    } else {
        RequireOpen();
        const std::size_t buffered = Buffered();
        m_cursor = m_buffer.get();
        Send(m_buffer.get(), buffered);
        if (count >= SINK_BUFFER_BYTES) {
            Send(bytes, count);
            return;
        }
    }
    std::memcpy(m_cursor, bytes, count);
    m_cursor += count;
}

void bio_Ofilter::Grow(std::size_t count)
{
    const std::size_t used = Buffered();
    const std::size_t capacity =
        std::max({FIRST_CAPACITY, used + count, 2 * static_cast<std::size_t>(m_end - m_buffer.get())});
    // realloc, because the system moves the pages of a large buffer without copying them.
    auto* const grown = static_cast<unsigned char*>(std::realloc(m_buffer.get(), capacity));
    if (grown == nullptr) {
        throw std::bad_alloc();
    }
    static_cast<void>(m_buffer.release());
    m_buffer.reset(grown);
    m_cursor = m_buffer.get() + used;
    m_end = m_buffer.get() + capacity;
}

void bio_Ofilter::Send(const void* bytes, std::size_t count)
{
    errno = 0;
    const auto sent = m_sink->stream->sputn(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    m_flushed += static_cast<std::uint64_t>(std::max<std::streamsize>(sent, 0));
    if (sent != static_cast<std::streamsize>(count)) {
        m_sink->error = errno;
        m_sink->failed = true;
        Fail("cannot write");
    }
}

void bio_Ofilter::RequireOpen() const
{
    if (m_sink->stream == nullptr) {
        Fail("the stream is closed");
    }
    if (m_sink->failed) {
        Fail("cannot write");
    }
}

void bio_Ofilter::Fail(const char* what) const
{
    cow_String text;
    if (m_sink != nullptr && !m_sink->path.IsEmpty()) {
        text = m_sink->path + ": ";
    }
    text += what;
    if (m_sink != nullptr && m_sink->error != 0) {
        text += ": " + VEXCRT::ErrorText(m_sink->error);
    }
    text += " at offset " + std::to_string(Offset());
    nex_TextException(text).Throw("platform/utl/impl/bio_Ofilter", __LINE__);
}

bio_Ofilter::Nested::Nested(bio_Ofilter& out) : m_out(out)
{
    if (m_out.m_nesting == bio_MAX_NESTING) {
        m_out.Fail("objects nested too deeply");
    }
    ++m_out.m_nesting;
}
