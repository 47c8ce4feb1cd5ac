#include "Counted.h"
#include "cow_String.h"

namespace
{
using Random = std::mt19937;

/// Few different bytes, so that searches hit, among them those at the ends of the order; lengths around the inline one.
std::string RandomBytes(Random& random, std::size_t maxLength)
{
    std::string bytes(random() % (maxLength + 1), ' ');
    for (char& byte : bytes) {
        byte = "ab\0\xFF"[random() % 4];
    }
    return bytes;
}

/// The order of ranks: 15 bytes, then the length up to 16.
std::pair<std::string, std::size_t> ModelRank(const std::string& text)
{
    return {(text + std::string(15, '\0')).substr(0, 15), std::min<std::size_t>(text.size(), 16)};
}

/// Compares two texts as their models, then changes one of them and its model.
void Change(Random& random, cow_String& text, std::string& model, const cow_String& peer, const std::string& peerModel)
{
    EXPECT_EQ(text <=> peer, model <=> peerModel);
    EXPECT_EQ(text == peer, model == peerModel);
    EXPECT_EQ(text.GetRank() <=> cow_String::RankOf(peerModel), ModelRank(model) <=> ModelRank(peerModel));
    const std::string other = RandomBytes(random, 20);
    const std::string part = RandomBytes(random, 2);
    const std::size_t at = random() % (model.size() + 1);
    const std::size_t what = model.size() > 60 ? 0 : random() % 9;
    if (what == 0) {
        text = std::string_view(other);
        model = other;
    } else if (what == 1) {
        text += other;
        model += other;
    } else if (what == 2) {
        text.Append(text.view().substr(at));
        model.append(std::string(model, at));
    } else if (what == 3 && at < model.size()) {
        text.Set(static_cast<int>(at), 'z');
        model[at] = 'z';
    } else if (what == 4) {
        text = text.Substring(static_cast<int>(at), static_cast<int>(at + 20));
        model = model.substr(at, 20);
    } else if (what == 5) {
        const std::size_t found = model.find(part);
        EXPECT_EQ(text.ReplaceFirst(part, other), found != std::string::npos);
        model.replace(std::min(found, model.size()), found != std::string::npos ? part.size() : 0,
                      found != std::string::npos ? other : "");
    } else if (what == 6) {
        text.Trim(part);
        model.erase(0, std::min(model.find_first_not_of(part), model.size()));
        model.erase(model.find_last_not_of(part) + 1);
    } else if (what == 7) {
        text.Reserve(random() % 60);
        EXPECT_EQ(text.Find(part, static_cast<int>(at)), static_cast<int>(model.find(part, at)));
        EXPECT_EQ(text.FindLast(part), static_cast<int>(model.rfind(part)));
    } else {
        text.Clear();
        model.clear();
    }
}
} // namespace

TEST(Texts, Random_changes_and_copies_agree_with_std_string)
{
    RunBesideModels<cow_String, std::string>(1, 20000, &Change, [](const cow_String& text, const std::string& model) {
        EXPECT_EQ(text.view(), model);
        EXPECT_EQ(text.AsCharPtr()[model.size()], '\0');
    });
}

TEST(Texts, Long_ones_share_and_replacing_reads_all_before_it_writes)
{
    cow_String text("012345678901234567890123456789");
    const cow_String whole = text.Substring(-5, 1000);
    EXPECT_EQ(whole.AsCharPtr(), text.AsCharPtr());
    EXPECT_TRUE(text.ReplaceFirst(text.view().substr(0, 10), text.view().substr(8, 4)));
    EXPECT_EQ(text, "890101234567890123456789");
    text = text;
    EXPECT_EQ(text.ReplaceAll("01", "0"), 3);
    EXPECT_EQ(text, "890023456789023456789");
}

TEST(Texts, Positions_outside_report_and_change_nothing)
{
    RecordedAssertions assertions;
    cow_String text("abc");
    for (const int index : {-1, 3}) {
        EXPECT_EQ(text[index], '\0');
        text.Set(index, 'x');
        EXPECT_EQ(assertions.Take(), Texts(2, "index >= 0 && index < Length()"));
    }
    EXPECT_EQ(text, "abc");
    EXPECT_EQ(text.Find("b", -3), 1);
    EXPECT_EQ(text.Find("b", 4), -1);
    EXPECT_THROW(text.Reserve(cow_String::MAX_LENGTH + 1), std::length_error);
    EXPECT_EQ(cow_String(static_cast<const char*>(nullptr)), "");
}
