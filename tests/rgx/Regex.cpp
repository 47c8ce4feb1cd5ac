#include "Test.h"
#include "nex_TextException.h"
#include "rgx_Module.h"
#include "rgx_ReCompileCache.h"
#include "rgx_funcs.h"

namespace
{

using Parts = cow_1DArrayList<cow_String, cow_String>;

/// What a call throws, with place and line, or its text.
template <class Call> cow_String Outcome(Call call)
{
    try {
        return call();
    } catch (const nex_TextException& failure) {
        return failure.DeveloperReport();
    }
}

cow_String Shown(const Parts& parts)
{
    return rgx_join(parts, "|");
}

const cow_String ZERO('\0');

} // namespace

TEST(Regex, Substitutions_give_the_stated_texts)
{
    const std::tuple<const char*, cow_String, cow_String, int, cow_String> rows[] = {
        {"(.)a", "xaya", "[$1]", 5, "[x][x]"},
        {"b", "abcb", "<$`$'$&>", 9, "a<acbb>c<acbb>"},
        {"(b)", "abc", "$10 $0 $$1 $x $", 1, "ab0 $0 $b $x $c"},
        {"b", "abc", "$99999999999$9", 1, "ac"},
        {"(b|)a*b", "ba", "-", 1, "-a"}, // machine code of PCRE2 10.42 would miss these
        {"\\)(b|)a*?b", ")b))", "-", 1, "-))"},
        {"[])](b|)a*?b", ")b))", "-", 1, "-))"},
        {"^a", "aaab", "-", 9, "---b"},            // what follows a match is a text of its own
        {"(?<=a)b", "abab", "-", 9, "a-a-"},       // which starts here behind the b
        {"(?<=a)a", "aaaa", "-", 9, "a-a-"},       // and has no a before it here
        {"\\$([1-9]+|&|`|')", "$1", "$1", 1, "1"}, // the pattern of the references themselves
        {"a", "a" + ZERO + "a", "-", 9, "-" + ZERO + "a"},
        {"x*", "a" + ZERO + "b", "-", 9, "-a-" + ZERO + "-b-"},
        {"a", "a", "$&" + ZERO + "$&", 9, "a" + ZERO + "$&"},
    };
    for (const auto& [pattern, subject, replacement, count, expected] : rows) {
        EXPECT_EQ(rgx_subn(pattern, subject, replacement, count), expected)
            << pattern << " in " << subject << " by " << replacement;
    }
}

TEST(Regex, Splitting_gives_the_stated_pieces_or_refuses_to_stand_still)
{
    const cow_String standsStill = "rgx_split: pattern matches the empty string (source/rgx/impl/rgx_funcs, line ";
    const std::tuple<const char*, cow_String, cow_String> rows[] = {
        {",", ",a,,b,", "a|b|"},
        {"(,)", "a,b", "a|b"},
        {"^a|,", "aab,a", "b|"},
        {",", "a,b" + ZERO + "c,d", "a|b" + ZERO + "c,d"},
        {"(?=c)", "abcd", standsStill},
        {"(?(DEFINE)(?<k>c\\K))(?=(?&k))", "cabc", "c|abc|"}, // the match starts behind its end
    };
    for (const auto& [pattern, subject, expected] : rows) {
        const cow_String outcome = Outcome([&] { return Shown(rgx_split(pattern, subject)); });
        EXPECT_EQ(expected == standsStill ? outcome.Substring(0, standsStill.Length()) : outcome, expected)
            << pattern << " in " << subject;
    }
    EXPECT_EQ(Shown({}), "");
}

TEST(Regex, Failures_say_what_and_where)
{
    EXPECT_EQ(Outcome([] { return rgx_match("a(b", "ab").String(); }),
              "rgx_match: error in regex at offset3: missing closing parenthesis"
              " (source/rgx/impl/rgx_ReCompileCache, line 91)");
    EXPECT_EQ(Outcome([] { return rgx_subn("(*UTF)a", "a", "b", 0); }),
              "rgx_match: error in regex at offset6: using UTF is disabled by the application"
              " (source/rgx/impl/rgx_ReCompileCache, line 91)");
    const cow_String limit = "rgx_match: exec error: -47 (source/rgx/impl/rgx_funcs, line 72)";
    const cow_String many = cow_String(std::string_view(std::string(100, 'a'))) + "b";
    for (const char* pattern : {"(a+)+$", "(*NO_JIT)(a+)+$", "(a|aa)+$"}) {
        EXPECT_EQ(Outcome([&] { return rgx_match(pattern, many).String(); }), limit) << pattern;
        EXPECT_EQ(Outcome([&] { return Shown(rgx_split(pattern, many)); }), limit) << pattern;
    }
}

TEST(Regex, Deep_matches_get_more_stack_or_the_interpreter)
{
    for (const int length : {1000, 30000, 300000}) {
        const cow_String text = std::string_view(std::string(static_cast<std::size_t>(length), 'a'));
        const rgx_ReIterator match = rgx_match("^(?:(a)|b)*c", text + "c");
        EXPECT_EQ(match.End(0), length + 1);
        EXPECT_EQ(match.Start(1), length - 1);
        EXPECT_FALSE(rgx_match("^(?:(a)|b)*c", text).IsMatched());
    }
}

TEST(Regex, A_match_reads_pair_by_pair)
{
    rgx_ReIterator match = rgx_match("(x)?(b)(c|)(y)?", "abde");
    EXPECT_EQ(match.GroupCount(), 4); // the last group took no part
    const char* const texts[] = {"", "a", "de", "b", "", "b", "", ""};
    for (int n = -3; n < 5; ++n) {
        EXPECT_EQ(match.NthString(n), texts[n + 3]) << n;
    }
    EXPECT_EQ(match.Start(1), -1);
    EXPECT_EQ(match.Start(3), 2);
    EXPECT_TRUE(match.Next() && match.Next() && match.String() == "b" && match.Next() && !match.Next());

    const rgx_ReIterator none;
    EXPECT_EQ(none.NthString(-2) + none.NthString(-1) + none.NthString(0) + none.String(), "");
    for (const auto& [text, number] :
         {std::pair("&", 0), {"'", -1}, {"`", -2}, {"12x", 12}, {"99999999999", 2147483647}}) {
        EXPECT_EQ(rgx_ReIterator(text, new int[2]{0, cow_String(text).Length()}, 1).StringAsGroupNum(), number) << text;
    }
    const cow_String subject = "zero" + ZERO + "byte";
    EXPECT_EQ(rgx_match("$", subject).NthString(-2), "zero");
    EXPECT_EQ(rgx_match("byte", subject).GroupCount(), 0);
    EXPECT_TRUE(rgx_match("^$", static_cast<const char*>(nullptr)).IsMatched());
}

TEST(Regex, A_full_cache_sheds_the_first_half_in_the_order_of_the_patterns)
{
    omi_SingletonBase<rgx_ReCompileCache>::Finalize();
    int count = 0;
    rgx_initialize(count);
    rgx_ReCompileCache& cache = *omi_SingletonBase<rgx_ReCompileCache>::Instance();
    for (int i = 199; i >= 100; --i) {
        cache.Get(cow_String(i));
    }
    EXPECT_TRUE(cache.IsFull());
    EXPECT_EQ(cache.PercentFull(), 1.0);
    void* const kept = cache.Get("150");
    EXPECT_THROW(cache.Get("("), nex_TextException);
    cache.Get("100");
    EXPECT_EQ(cache.PercentFull(), 1.0);

    cache.Get("0"); // sheds 100 to 149
    EXPECT_EQ(cache.PercentFull(), 0.51);
    EXPECT_EQ(cache.Get("150"), kept);
    cache.Get("100"); // compiled anew
    EXPECT_EQ(cache.PercentFull(), 0.52);
    real_pcre* const other = rgx_pcre_compile("other", 0, nullptr, nullptr);
    cache.Insert("100", other);
    EXPECT_EQ(cache.Get("100"), other);

    rgx_initialize(count);
    rgx_finalize(count);
    EXPECT_NE(omi_SingletonBase<rgx_ReCompileCache>::Instance(), nullptr);
    rgx_finalize(count);
    EXPECT_EQ(omi_SingletonBase<rgx_ReCompileCache>::Instance(), nullptr);
    EXPECT_EQ(count, 0);
}
