#include "Test.h"
#include "rgx_pcre.h"

namespace
{

struct Free
{
    void operator()(real_pcre* code) const { rgx_pcre_free(code); }
};
using Pattern = std::unique_ptr<real_pcre, Free>;

constexpr int CASELESS = 0x00000008;
constexpr int UTF = 0x00080000;
constexpr int NOTBOL = 0x00000001;
constexpr int COPY_MATCHED_SUBJECT = 0x00004000;

Pattern Compiled(const char* pattern, int options = 0)
{
    return Pattern(rgx_pcre_compile(pattern, options, nullptr, nullptr));
}

} // namespace

TEST(ClassicCalls, Offsets_are_filled_to_the_last_pair_that_fits)
{
    const std::tuple<int, int, std::vector<int>> rows[] = {
        {8, 3, {1, 3, -1, -1, 1, 2, -1, -1}},
        {7, 3, {1, 3, -1, -1, 1, 2, 7, 7}},
        {4, 0, {1, 3, -1, -1, 7, 7, 7, 7}},
        {1, 0, {7, 7, 7, 7, 7, 7, 7, 7}},
    };
    const Pattern pattern = Compiled("(X)?(B)C(Y)?", CASELESS);
    for (const bool studied : {false, true}) {
        const real_pcre_extra* const extra = studied ? rgx_pcre_study(pattern.get(), 0, nullptr) : nullptr;
        for (const auto& [room, result, promised] : rows) {
            std::vector<int> offsets(8, 7);
            EXPECT_EQ(rgx_pcre_exec(pattern.get(), extra, "abcd", 4, 0, offsets.data(), room), result);
            EXPECT_EQ(offsets, promised) << room;
        }
        EXPECT_EQ(rgx_pcre_exec(pattern.get(), extra, "abcd", 2, 0, nullptr, 0), -1);
        EXPECT_EQ(rgx_pcre_exec(pattern.get(), extra, "\0bc", 3, 0, nullptr, 0), 0); // zero bytes are bytes
    }
}

TEST(ClassicCalls, Wrong_arguments_are_results_and_never_faults)
{
    constexpr int IS_NULL = -51, BAD_DATA = -29, BAD_OPTION = -34;
    const char* error = nullptr;
    int offset = -1;
    EXPECT_EQ(rgx_pcre_compile("a)", 0, &error, &offset), nullptr);
    EXPECT_STREQ(error, "unmatched closing parenthesis");
    EXPECT_EQ(offset, 1);
    EXPECT_EQ(Compiled("a", UTF), nullptr);
    EXPECT_NE(Compiled(nullptr), nullptr);

    const Pattern pattern = Compiled("^a");
    EXPECT_EQ(rgx_pcre_study(nullptr, 0, &error), nullptr);
    EXPECT_STREQ(error, "NULL argument passed with non-zero length");
    EXPECT_EQ(rgx_pcre_study(pattern.get(), 1, &error), nullptr);
    EXPECT_STREQ(error, "bad option value");
    EXPECT_NE(rgx_pcre_study(pattern.get(), 0, &error), nullptr);
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(rgx_pcre_study(Compiled("(*NO_JIT)a").get(), 0, &error), nullptr);
    EXPECT_EQ(error, nullptr);

    int room[2];
    EXPECT_EQ(rgx_pcre_exec(nullptr, nullptr, "a", 1, 0, room, 2), IS_NULL);
    EXPECT_EQ(rgx_pcre_exec(pattern.get(), nullptr, nullptr, 0, 0, room, 2), IS_NULL);
    EXPECT_EQ(rgx_pcre_exec(pattern.get(), nullptr, "a", 1, 0, nullptr, 2), IS_NULL);
    EXPECT_EQ(rgx_pcre_exec(pattern.get(), nullptr, "a", -1, 0, room, 2), BAD_DATA); // would be "up to the zero byte"
    EXPECT_EQ(rgx_pcre_exec(pattern.get(), nullptr, "a", 1, 0, room, -2), BAD_DATA);
    EXPECT_EQ(rgx_pcre_exec(pattern.get(), nullptr, "a", 1, COPY_MATCHED_SUBJECT, room, 2), BAD_OPTION);
    EXPECT_EQ(rgx_pcre_exec(pattern.get(), nullptr, "a", 1, NOTBOL, room, 2), -1);
    EXPECT_EQ(rgx_pcre_info(nullptr, nullptr, nullptr), IS_NULL);
    rgx_pcre_free(nullptr);
}

TEST(ClassicCalls, Info_tells_groups_options_and_first_byte)
{
    const std::tuple<const char*, int, int> rows[] = {{"x(a)(b)", 2, 'x'}, {"(?m)^a", 0, -1}, {"a|b", 0, -2}};
    for (const auto& [pattern, groups, promisedByte] : rows) {
        int options = -1;
        int firstByte = 0;
        EXPECT_EQ(rgx_pcre_info(Compiled(pattern, CASELESS).get(), &options, &firstByte), groups);
        EXPECT_EQ(firstByte, promisedByte) << pattern;
        EXPECT_TRUE((options & CASELESS) != 0 && rgx_pcre_info(Compiled("a").get(), nullptr, nullptr) == 0);
    }
    EXPECT_GE(std::stod(rgx_pcre_version()), 10.0);
}
