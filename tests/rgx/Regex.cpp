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

/// The expansion of references, read by hand.
std::string ModelExpanded(const std::string& replacement, const rgx_ReIterator& match)
{
    std::string expanded;
    for (std::size_t i = 0; i < replacement.size(); ++i) {
        const char next = replacement[i] == '$' && i + 1 < replacement.size() ? replacement[i + 1] : '\0';
        const std::size_t digits = std::min(replacement.find_first_not_of("123456789", i + 1), replacement.size());
        if (next == '&' || next == '`' || next == '\'') {
            expanded += match.NthString(next == '&' ? 0 : next == '`' ? -2 : -1).view();
            ++i;
        } else if (next >= '1' && next <= '9') {
            expanded += match.NthString(std::stoi(replacement.substr(i + 1, digits - i - 1))).view();
            i = digits - 1;
        } else {
            expanded += replacement[i];
        }
    }
    return expanded;
}

/// Substitution as it reads in prose: a fresh text after every match.
cow_String ModelSubstituted(const cow_String& pattern, const cow_String& subject, const cow_String& replacement,
                            int count)
{
    rgx_ReIterator match = rgx_match(pattern, subject);
    if (!match.IsMatched() || count < 1) {
        return subject;
    }
    const std::string expanded = ModelExpanded(std::string(replacement), match);
    std::string result;
    std::string rest(subject);
    for (int n = 0; n < count && match.IsMatched(); match = rgx_match(pattern, rest.c_str()), ++n) {
        const auto start = static_cast<std::size_t>(match.Start(0));
        auto end = static_cast<std::size_t>(match.End(0));
        result += rest.substr(0, start) + expanded;
        if (rest.empty()) {
            return std::string_view(result);
        }
        if (end == 0) {
            result += rest[0];
            end = 1;
        }
        rest.erase(0, end);
    }
    return std::string_view(result + rest);
}

cow_String ModelSplit(const cow_String& pattern, const cow_String& subject)
{
    std::string shown;
    std::string rest(subject);
    for (rgx_ReIterator match; (match = rgx_match(pattern, rest.c_str())).IsMatched();) {
        if (match.Start(0) > 0) {
            shown += rest.substr(0, static_cast<std::size_t>(match.Start(0))) + "|";
        }
        if (match.End(0) == 0) {
            return "empty";
        }
        rest.erase(0, static_cast<std::size_t>(match.End(0)));
    }
    return std::string_view(shown + rest);
}

/// A text of up to `most` of the pieces.
cow_String AnyOf(std::mt19937& random, const std::vector<const char*>& pieces, std::size_t most)
{
    cow_String text;
    for (std::size_t left = random() % (most + 1); left != 0; --left) {
        text += pieces[random() % pieces.size()];
    }
    return text;
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

TEST(Regex, Random_patterns_agree_with_the_steps_taken_one_by_one)
{
    std::mt19937 random(7);
    const std::vector<const char*> atoms = {"a", "b",  "(a)", "(b|)", ".",      "^",
                                            "$", "a*", "b?",  "\\b",  "(?<=a)", "[ab]+"};
    const std::vector<const char*> letters = {"a", "b", " ", "ab"};
    const std::vector<const char*> pieces = {"$", "1", "2", "0", "&", "`", "'", "x"};
    for (int i = 0; i < 20000; ++i) {
        const cow_String pattern = AnyOf(random, atoms, 3);
        const cow_String subject = AnyOf(random, letters, 9);
        const cow_String replacement = AnyOf(random, pieces, 6);
        const int count = static_cast<int>(random() % 5);
        SCOPED_TRACE((pattern + " in '" + subject + "' by " + replacement).view());
        ASSERT_EQ(rgx_subn(pattern, subject, replacement, count),
                  ModelSubstituted(pattern, subject, replacement, count));
        const cow_String outcome = Outcome([&] { return Shown(rgx_split(pattern, subject)); });
        ASSERT_EQ(outcome.StartsWith("rgx_split: ") ? "empty" : outcome, ModelSplit(pattern, subject));
    }
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
