#include "StreamChecks.h"
#include "utl_FilePath.h"

#include <streambuf>

namespace
{
/// A stream that delivers small packets and counts how often it is asked to wait for one.
class Packets : public std::streambuf
{
public:
    Packets(std::string bytes, std::size_t packetBytes) : m_bytes(std::move(bytes)), m_packetBytes(packetBytes) {}
    int_type underflow() override
    {
        ++waits;
        const std::size_t count = std::min(m_packetBytes, m_bytes.size() - m_next);
        char* const first = m_bytes.data() + m_next;
        setg(first, first, first + count);
        m_next += count;
        return count != 0 ? traits_type::to_int_type(*first) : traits_type::eof();
    }
    int waits = 0;

private:
    std::string m_bytes;
    std::size_t m_packetBytes;
    std::size_t m_next = 0;
};

/// A stream that takes `room` bytes and no more.
class Full : public std::streambuf
{
public:
    explicit Full(std::streamsize bytes) : room(bytes) {}
    std::streamsize xsputn(const char*, std::streamsize count) override
    {
        const std::streamsize taken = std::min(count, room);
        room -= taken;
        return taken;
    }
    std::streamsize room;
};

/// The same bytes behind each kind of reader.
struct Source
{
    Source(int kind, const std::string& given) : packets(given, 3), bytes(given)
    {
        if (kind == 0) {
            reader = std::make_unique<bio_Ifilter>(bytes.data(), bytes.size());
        } else if (kind == 1) {
            reader = std::make_unique<bio_Ifilter>(packets);
        } else {
            std::ofstream(folder / "source", std::ios::binary) << bytes;
            reader = std::make_unique<bio_Ifilter>(utl_FilePath((folder / "source").c_str()));
            prefix = folder / "source" + ": ";
        }
    }

    static constexpr int KINDS = 3;
    const ScratchFolder folder;
    Packets packets;
    std::string bytes;
    std::unique_ptr<bio_Ifilter> reader;
    std::string prefix; // of its failures' texts
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

    Packets packets(expected, 3);
    char first = 0;
    bio_Ifilter(packets) >> first;
    EXPECT_EQ(packets.waits, 1) << "a reader never waits for more than it needs";
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
            bio_Ifilter& in = *source.reader;
            std::int32_t number = 0;
            cow_String text;
            double real = 0;
            bool flag = false;
            const std::string refusal = RefusalOf([&] { in >> number >> text >> real >> flag; });
            if (length == whole.size()) {
                EXPECT_TRUE(number == 7 && text == "twenty bytes of text" && real == 2.5 && flag);
                EXPECT_TRUE(in.AtEnd());
                continue;
            }
            const bool inText = length >= 8 && length < 28;
            // A reader that knows its size refuses the length of the text itself.
            const char* const what =
                inText && kind != 1 ? "a count larger than the rest of the stream" : "the stream ends too early";
            const int start = length < 4 ? 0 : length < 8 ? 4 : inText ? (kind != 1 ? 4 : 8) : length < 36 ? 28 : 36;
            EXPECT_EQ(refusal, source.prefix + what + " at offset " + std::to_string(start));
        }
    }
}

TEST(ByteStream, Texts_longer_than_the_buffers_survive_every_way)
{
    std::string text(300001, 'x');
    text[150000] = '\0';
    const ScratchFolder folder;
    bio_Ofilter file{utl_FilePath((folder / "long").c_str())};
    bio_Ofilter memory;
    std::stringbuf buffer;
    bio_Ofilter stream(buffer);
    for (bio_Ofilter* const out : {&file, &memory, &stream}) {
        *out << std::uint8_t{1} << cow_String(text) << std::uint8_t{2};
        EXPECT_EQ(out->Offset(), text.size() + 6);
        out->Close();
    }
    EXPECT_EQ(buffer.str(), Bytes(memory));
    std::stringbuf written;
    std::ifstream(folder / "long", std::ios::binary) >> &written;
    EXPECT_EQ(written.str(), Bytes(memory));
    EXPECT_EQ(stream.Size(), 0U);
    for (int kind = 0; kind < Source::KINDS; ++kind) {
        Source source(kind, Bytes(memory));
        std::uint8_t first = 0;
        std::uint8_t last = 0;
        cow_String read;
        *source.reader >> first >> read >> last;
        EXPECT_EQ(read, cow_String(text)) << "kind " << kind;
        EXPECT_EQ(first + last, 3);
        EXPECT_EQ(source.reader->Offset(), text.size() + 6);
    }
}

TEST(ByteStream, A_count_is_bounded_by_what_can_follow)
{
    const std::tuple<const char*, std::uint32_t, std::size_t, std::array<bool, Source::KINDS>> rows[] = {
        {"exactly the rest", 3, 4, {true, true, true}},
        {"one item too many", 4, 4, {false, true, false}},
        {"product overflows 32 bits", 0x40000001, 4, {false, true, false}},
        {"largest", 0x7FFFFFFF, 8, {false, true, false}},
        {"beyond the largest", 0x80000000, 0, {false, false, false}},
        {"items without bytes", 1000, 0, {true, true, true}}};
    for (const auto& [name, given, itemBytes, fits] : rows) {
        bio_Ofilter out;
        out << given << std::int64_t{0} << std::int32_t{0};
        for (int kind = 0; kind < Source::KINDS; ++kind) {
            Source source(kind, Bytes(out));
            std::uint32_t count = 0;
            EXPECT_EQ(RefusalOf([&] { count = source.reader->ReadCount(itemBytes); }),
                      fits[kind] ? "" : source.prefix + "a count larger than the rest of the stream at offset 0")
                << name << ", kind " << kind;
            EXPECT_LE(source.reader->SafeReserve(given, 16) * 16, kind == 1 ? 65536U : 12U);
        }
    }
}

TEST(ByteStream, A_file_says_what_is_wrong_with_it)
{
    const ScratchFolder folder;
    const std::string missing = folder / "no-such-folder/file";
    const std::string reason = ": No such file or directory at offset 0";
    EXPECT_EQ(RefusalOf([&] { bio_Ifilter in{utl_FilePath(missing.c_str())}; }), missing + ": cannot open" + reason);
    EXPECT_EQ(RefusalOf([&] { bio_Ofilter out{utl_FilePath(missing.c_str())}; }), missing + ": cannot create" + reason);

    const utl_FilePath path((folder / "file").c_str());
    bio_Ofilter(path) << 'a' << 'b';
    EXPECT_EQ(std::filesystem::file_size(path.PathName().view()), 2U) << "the destructor writes";
    bio_Ofilter out(path);
    out << 'a';
    out.Close();
    out.Close();
    EXPECT_EQ(RefusalOf([&] { out << 'b'; }), path.PathName() + ": the stream is closed at offset 1");
    EXPECT_EQ(std::filesystem::file_size(path.PathName().view()), 1U);
}

TEST(ByteStream, A_sink_that_is_full_is_reported_and_stays_failed)
{
    Full full(5);
    bio_Ofilter out(full);
    out << 1.0;
    EXPECT_EQ(RefusalOf([&] { out.Flush(); }), "cannot write at offset 5");
    EXPECT_EQ(RefusalOf([&] { out.Close(); }), "cannot write at offset 5");

    Full roomForABuffer(70000);
    bio_Ofilter large(roomForABuffer);
    EXPECT_EQ(RefusalOf([&] { large << cow_String(std::string(69997, 'x')); }), "cannot write at offset 70000");
}

#ifdef __linux__
TEST(ByteStream, Devices_report_their_errors_as_files_do)
{
    bio_Ofilter out{utl_FilePath("/dev/full")};
    out << 'a';
    EXPECT_EQ(RefusalOf([&] { out.Close(); }), "/dev/full: cannot write: No space left on device at offset 0");
    bio_Ifilter folder{utl_FilePath("/")};
    EXPECT_EQ(RefusalOf([&] { folder.AtEnd(); }), "/: cannot read: Is a directory at offset 0");
    bio_Ifilter endless{utl_FilePath("/dev/zero")};
    EXPECT_EQ(endless.ReadCount(8), 0U);
}
#endif
