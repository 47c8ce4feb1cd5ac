#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "nex_TextException.h"
#include "utl_FilePath.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <streambuf>
#include <string>

namespace
{
/// The text of the nex_TextException that `call` throws; a note when it throws none.
template <class Call> std::string Failure(Call call)
{
    try {
        call();
    } catch (const nex_TextException& exception) {
        return exception.what();
    }
    return "no exception";
}

/// A file of the running test alone: tests run side by side.
utl_FilePath Scratch(const char* name)
{
    const char* const folder = std::getenv("TEST_TMPDIR");
    const cow_String test = testing::UnitTest::GetInstance()->current_test_info()->name();
    return utl_FilePath(folder != nullptr ? folder : ".").Join(test + "_" + name);
}

/// A stream that delivers small packets and counts how often it is asked to wait for one.
class Packets : public std::streambuf
{
public:
    Packets(std::string bytes, std::size_t packetBytes) : m_bytes(std::move(bytes)), m_packetBytes(packetBytes) {}
    int waits = 0;

protected:
    int_type underflow() override
    {
        ++waits;
        const std::size_t count = std::min(m_packetBytes, m_bytes.size() - m_next);
        char* const first = m_bytes.data() + m_next;
        setg(first, first, first + count);
        m_next += count;
        return count != 0 ? traits_type::to_int_type(*first) : traits_type::eof();
    }

private:
    std::string m_bytes;
    std::size_t m_packetBytes;
    std::size_t m_next = 0;
};

/// A stream that takes `room` bytes and no more.
class Full : public std::streambuf
{
public:
    explicit Full(std::streamsize room) : m_room(room) {}

protected:
    std::streamsize xsputn(const char*, std::streamsize count) override
    {
        const std::streamsize taken = std::min(count, m_room);
        m_room -= taken;
        return taken;
    }

private:
    std::streamsize m_room;
};

/// The same bytes behind each kind of reader.
class Source
{
public:
    Source(int kind, const std::string& bytes) : m_packets(bytes, 3), m_bytes(bytes)
    {
        if (kind == 0) {
            m_reader = std::make_unique<bio_Ifilter>(m_bytes.data(), m_bytes.size());
        } else if (kind == 1) {
            m_reader = std::make_unique<bio_Ifilter>(m_packets);
        } else {
            m_path = Scratch("source.bin").PathName().AsCharPtr();
            std::ofstream(m_path, std::ios::binary) << bytes;
            m_reader = std::make_unique<bio_Ifilter>(utl_FilePath(m_path.c_str()));
        }
    }
    bio_Ifilter& Reader() { return *m_reader; }
    /// What stands before the failure text of this kind.
    std::string Prefix() const { return m_path.empty() ? "" : m_path + ": "; }

    static constexpr int KINDS = 3;

private:
    Packets m_packets;
    std::string m_bytes;
    std::string m_path;
    std::unique_ptr<bio_Ifilter> m_reader;
};

std::string Bytes(const bio_Ofilter& out)
{
    return {reinterpret_cast<const char*>(out.Data()), out.Size()};
}
} // namespace

TEST(ByteStream, Values_have_their_documented_bytes)
{
    bio_Ofilter out;
    out << true << 'A' << static_cast<signed char>(-1) << std::int16_t{-2} << std::uint16_t{0x1234}
        << std::int32_t{0x01020304} << std::uint64_t{0x0102030405060708} << 1.0F << -2.0 << cow_String("a\0b", 3)
        << "cd" << cow_String();
    const std::string expected("\x01"
                               "A\xFF\xFE\xFF\x34\x12\x04\x03\x02\x01\x08\x07\x06\x05\x04\x03\x02\x01"
                               "\0\0\x80\x3F\0\0\0\0\0\0\0\xC0\x03\0\0\0a\0b\x02\0\0\0cd\0\0\0\0",
                               48);
    EXPECT_EQ(Bytes(out), expected);
    EXPECT_EQ(out.Offset(), expected.size());
}

TEST(ByteStream, Every_truncation_is_reported_where_the_lost_value_starts)
{
    bio_Ofilter out;
    out << std::int32_t{7} << cow_String("twenty bytes of text") << 2.5 << true;
    const std::string whole = Bytes(out);
    for (int kind = 0; kind < Source::KINDS; ++kind) {
        for (std::size_t length = 0; length <= whole.size(); ++length) {
            SCOPED_TRACE("kind " + std::to_string(kind) + ", length " + std::to_string(length));
            Source source(kind, whole.substr(0, length));
            bio_Ifilter& in = source.Reader();
            std::int32_t number = 0;
            cow_String text;
            double real = 0;
            bool flag = false;
            const std::string failure = Failure([&] { in >> number >> text >> real >> flag; });
            if (length == whole.size()) {
                EXPECT_EQ(number, 7);
                EXPECT_EQ(text, "twenty bytes of text");
                EXPECT_EQ(real, 2.5);
                EXPECT_TRUE(flag);
                EXPECT_TRUE(in.AtEnd());
                continue;
            }
            const bool inText = length >= 8 && length < 28;
            // A reader that knows its size refuses the length of the text itself.
            const char* const what =
                inText && kind != 1 ? "a count larger than the rest of the stream" : "the stream ends too early";
            const int start = length < 4 ? 0 : length < 8 ? 4 : inText ? (kind != 1 ? 4 : 8) : length < 36 ? 28 : 36;
            EXPECT_EQ(failure, source.Prefix() + what + " at offset " + std::to_string(start));
        }
    }
}

TEST(ByteStream, Texts_longer_than_the_buffers_survive_every_way)
{
    std::string text(300001, 'x');
    text[150000] = '\0';
    const utl_FilePath path = Scratch("long.bin");
    bio_Ofilter file(path);
    bio_Ofilter memory;
    std::stringbuf buffer;
    bio_Ofilter stream(buffer);
    for (bio_Ofilter* const out : {&file, &memory, &stream}) {
        *out << std::uint8_t{1} << cow_String(text) << std::uint8_t{2};
        EXPECT_EQ(out->Offset(), text.size() + 6);
        out->Close();
    }
    EXPECT_EQ(buffer.str(), Bytes(memory));
    EXPECT_EQ(stream.Size(), 0U);
    for (int kind = 0; kind < Source::KINDS; ++kind) {
        Source source(kind, Bytes(memory));
        std::uint8_t first = 0;
        std::uint8_t last = 0;
        cow_String read;
        source.Reader() >> first >> read >> last;
        EXPECT_EQ(read, cow_String(text)) << "kind " << kind;
        EXPECT_EQ(first + last, 3);
        EXPECT_EQ(source.Reader().Offset(), text.size() + 6);
    }
    bio_Ifilter in(path);
    std::string all(text.size() + 6, '\0');
    in.ReadBytes(all.data(), all.size());
    EXPECT_EQ(all, Bytes(memory));
    EXPECT_TRUE(in.AtEnd());
}

TEST(ByteStream, A_count_is_bounded_by_what_can_follow)
{
    struct Row
    {
        const char* name;
        std::uint32_t count;
        std::size_t itemBytes;
        bool fits[Source::KINDS];
    };
    const Row rows[] = {{"exactly the rest", 3, 4, {true, true, true}},
                        {"one item too many", 4, 4, {false, true, false}},
                        {"product overflows 32 bits", 0x40000001, 4, {false, true, false}},
                        {"largest", 0x7FFFFFFF, 8, {false, true, false}},
                        {"beyond the largest", 0x80000000, 0, {false, false, false}},
                        {"items without bytes", 1000, 0, {true, true, true}}};
    for (const Row& row : rows) {
        bio_Ofilter out;
        out << row.count << std::int64_t{0} << std::int32_t{0};
        for (int kind = 0; kind < Source::KINDS; ++kind) {
            Source source(kind, Bytes(out));
            std::uint32_t count = 0;
            const std::string failure = Failure([&] { count = source.Reader().ReadCount(row.itemBytes); });
            EXPECT_EQ(failure, row.fits[kind]
                                   ? "no exception"
                                   : source.Prefix() + "a count larger than the rest of the stream at offset 0")
                << row.name << ", kind " << kind;
            EXPECT_LE(source.Reader().SafeReserve(row.count, 16) * 16, kind == 1 ? 65536U : 12U);
        }
    }
}

TEST(ByteStream, A_bool_is_0_or_1)
{
    bio_Ifilter in("\x01\x02", 2);
    bool flag = false;
    in >> flag;
    EXPECT_TRUE(flag);
    EXPECT_EQ(Failure([&] { in >> flag; }), "a bool that is neither 0 nor 1 at offset 1");
}

TEST(ByteStream, A_reader_never_waits_for_more_than_it_needs)
{
    Packets packets(std::string("\x01\0\0\0\x02\0\0\0", 8), 4);
    bio_Ifilter in(packets);
    std::int32_t number = 0;
    in >> number;
    EXPECT_EQ(number, 1);
    EXPECT_EQ(packets.waits, 1);
}

TEST(ByteStream, Files_that_cannot_be_used_are_named_with_the_reason)
{
    const std::string missing = Scratch("no-such-folder").Join("file").PathName().AsCharPtr();
    const std::string reason = ": No such file or directory at offset 0";
    EXPECT_EQ(Failure([&] { bio_Ifilter in{utl_FilePath(missing.c_str())}; }), missing + ": cannot open" + reason);
    EXPECT_EQ(Failure([&] { bio_Ofilter out{utl_FilePath(missing.c_str())}; }), missing + ": cannot create" + reason);
}

TEST(ByteStream, Nothing_is_written_after_the_end)
{
    const utl_FilePath path = Scratch("closed.bin");
    bio_Ofilter out(path);
    out << 'a';
    out.Close();
    out.Close();
    EXPECT_EQ(Failure([&] { out << 'b'; }), std::string(path.PathName().view()) + ": the stream is closed at offset 1");
    EXPECT_EQ(std::filesystem::file_size(path.PathName().view()), 1U);
}

TEST(ByteStream, The_destructor_writes_what_is_left)
{
    const utl_FilePath path = Scratch("left.bin");
    bio_Ofilter(path) << 'a' << 'b';
    EXPECT_EQ(std::filesystem::file_size(path.PathName().view()), 2U);
}

TEST(ByteStream, A_sink_that_is_full_is_reported_and_stays_failed)
{
    Full full(5);
    bio_Ofilter out(full);
    out << 1.0;
    EXPECT_EQ(Failure([&] { out.Flush(); }), "cannot write at offset 5");
    EXPECT_EQ(Failure([&] { out.Close(); }), "cannot write at offset 5");

    Full roomForABuffer(70000);
    bio_Ofilter large(roomForABuffer);
    const std::string bytes(70001, 'x');
    EXPECT_EQ(Failure([&] { large.WriteBytes(bytes.data(), bytes.size()); }), "cannot write at offset 70000");
}

#ifdef __linux__
TEST(ByteStream, Devices_report_their_errors_as_files_do)
{
    bio_Ofilter out{utl_FilePath("/dev/full")};
    out << 'a';
    EXPECT_EQ(Failure([&] { out.Close(); }), "/dev/full: cannot write: No space left on device at offset 0");
    bio_Ifilter folder{utl_FilePath("/")};
    EXPECT_EQ(Failure([&] { folder.AtEnd(); }), "/: cannot read: Is a directory at offset 0");
    bio_Ifilter endless{utl_FilePath("/dev/zero")};
    EXPECT_EQ(endless.ReadCount(8), 0U);
}
#endif

TEST(ByteStream, Nesting_ends_at_its_limit)
{
    bio_Ofilter out;
    bio_Ifilter in("", 0);
    std::unique_ptr<bio_Ofilter::Nested> writing[bio_MAX_NESTING];
    std::unique_ptr<bio_Ifilter::Nested> reading[bio_MAX_NESTING];
    for (int level = 0; level < bio_MAX_NESTING; ++level) {
        writing[level] = std::make_unique<bio_Ofilter::Nested>(out);
        reading[level] = std::make_unique<bio_Ifilter::Nested>(in);
    }
    EXPECT_EQ(Failure([&] { bio_Ofilter::Nested nested(out); }), "objects nested too deeply at offset 0");
    EXPECT_EQ(Failure([&] { bio_Ifilter::Nested nested(in); }), "objects nested too deeply at offset 0");
    writing[0].reset();
    reading[0].reset();
    EXPECT_EQ(Failure([&] { bio_Ofilter::Nested nested(out); }), "no exception");
    EXPECT_EQ(Failure([&] { bio_Ifilter::Nested nested(in); }), "no exception");
}
