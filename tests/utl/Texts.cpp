#include "Counted.h"
#include "RecordedAssertions.h"
#include "cow_String.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

using namespace std::string_view_literals;

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

/// One random change of `text` and of its model.
void Change(Random& random, cow_String& text, std::string& model)
{
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
    Random random(1);
    std::vector<cow_String> texts(4);
    std::vector<std::string> models(4);
    for (int step = 0; step < 20000; ++step) {
        const std::size_t a = random() % 4;
        const std::size_t b = random() % 4;
        if (random() % 4 == 0) {
            texts[a] = texts[b];
            models[a] = models[b];
        } else {
            Change(random, texts[a], models[a]);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            ASSERT_EQ(texts[i].view(), models[i]) << "step " << step;
            ASSERT_EQ(texts[i].AsCharPtr()[models[i].size()], '\0') << "step " << step;
            ASSERT_EQ(texts[a] <=> texts[i], models[a] <=> models[i]) << "step " << step;
            ASSERT_EQ(texts[a] == texts[i], models[a] == models[i]) << "step " << step;
        }
    }
}

TEST(Texts, Ranks_order_as_unsigned_bytes_and_tell_short_texts_apart)
{
    const std::string_view rising[] = {""sv,
                                       "\0"sv,
                                       "\0\0"sv,
                                       "a"sv,
                                       "a\0"sv,
                                       "aaaaaaaa"sv,
                                       "aaaaaaaa\0"sv,
                                       "aaaaaaaaaaaaaaa"sv,
                                       "aaaaaaaaaaaaaaaa"sv,
                                       "\x7F"sv,
                                       "\x80"sv,
                                       "\xFF"sv,
                                       "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"sv,
                                       "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"sv};
    for (std::size_t i = 1; i < std::size(rising); ++i) {
        const cow_String lower(rising[i - 1]);
        const cow_String upper(rising[i]);
        EXPECT_LT(lower.GetRank(), upper.GetRank()) << i;
        EXPECT_EQ(upper.GetRank(), cow_String::RankOf(rising[i])) << i;
        EXPECT_LT(lower, upper) << i;
    }
    cow_String shrunk("a long text, shared by nobody");
    shrunk.TrimRight("abcdefghijklmnopqrstuvwxyz, ");
    shrunk.Append("a");
    EXPECT_EQ(shrunk.GetRank(), cow_String("a").GetRank());
}

TEST(Texts, Numbers_are_written_as_printf_writes_them)
{
    std::vector<double> values{0.0,   -0.0, 1.0,     0.1,  1e15, 1e16,  123456789012345678.0, 1e-5, 1e-4, 5e-324,
                               1e308, -2.5, 1.0 / 3, 1e22, 100,  1e-300};
    values.insert(values.end(), {INFINITY, -INFINITY, NAN, -NAN});
    std::mt19937_64 random(2);
    for (int i = 0; i < 5000; ++i) {
        values.push_back(std::bit_cast<double>(random()));
    }
    for (const double value : values) {
        char expected[40];
        std::snprintf(expected, sizeof expected, "%.15g", value);
        std::replace(expected, expected + std::strlen(expected), ',', '.'); // the locale may be any
        EXPECT_EQ(cow_String(value), expected);
    }
    EXPECT_EQ(cow_String(std::numeric_limits<int>::min()), "-2147483648");
    EXPECT_EQ(cow_String(4294967295u), "4294967295");
}

TEST(Texts, A_copy_written_to_leaves_the_source_unchanged)
{
    const cow_String source("a text that is too long to live in the object");
    cow_String copy(source);
    EXPECT_TRUE(copy.SharesWith(source));
    EXPECT_EQ(copy.AsCharPtr(), source.AsCharPtr());
    copy.Set(0, 'A');
    EXPECT_FALSE(copy.SharesWith(source));
    EXPECT_EQ(source[0], 'a');
    EXPECT_EQ(source.Substring(-5, 1000).AsCharPtr(), source.AsCharPtr()); // the whole text is no new one
}

TEST(Texts, Writing_to_itself_reads_before_it_writes)
{
    cow_String text("0123456789");
    text.Append(text);
    text.Append(text.view().substr(10));
    EXPECT_EQ(text, "012345678901234567890123456789");
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
        EXPECT_EQ(assertions.Take(), std::vector<std::string>(2, "index >= 0 && index < Length()"));
    }
    EXPECT_EQ(text, "abc");
    EXPECT_EQ(text.Find("b", -3), 1);
    EXPECT_EQ(text.Find("b", 4), -1);
    EXPECT_THROW(text.Reserve(cow_String::MAX_LENGTH + 1), std::length_error);
    EXPECT_EQ(cow_String(static_cast<const char*>(nullptr)), "");
}
