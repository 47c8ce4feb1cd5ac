// Random calls of random signatures, checked against the protocol as its rules say it, with lists of names and counters.

#include "Values.h"
#include "omu_TypeErrorException.h"

namespace
{

enum Kind
{
    INT,
    TEXT,
    INTS,
    KINDS
};

struct Value
{
    Kind kind;
    int number;
};

constexpr const char* positionalTargets[KINDS] = {"int32", "string", "sequence of Integers"};
constexpr const char* keywordTargets[KINDS] = {"number", "string", "sequence of Integers"};
constexpr const char* positionalValues[KINDS] = {"number", "string", "list"};
constexpr const char* keywordValues[KINDS] = {"number", "string", "sequence of Integers"};

omu_PrimHolder Held(const Value& value)
{
    return value.kind == INTS  ? omu_PrimHolder(List({value.number}).Copy())
           : value.kind == INT ? omu_Hold(value.number)
                               : omu_Hold(cow_String(value.number));
}

/// Fetches a target of the kind, by position alone when there is no name; what it holds then, at first -1.
template <class... Name> int Fetch(omu_Arguments& arguments, Kind kind, const Name&... name)
{
    int number = -1;
    cow_String text = "-1";
    cow_List<int> numbers{-1};
    if (kind == INT) {
        arguments.Get(number, name...);
    } else if (kind == TEXT) {
        arguments.Get(text, name...);
    } else {
        arguments.Get(numbers, name...);
    }
    return kind == INT ? number : kind == TEXT ? std::stoi(std::string(text)) : numbers[0];
}

/// The protocol, word for word.
class Model
{
public:
    std::vector<Value> positional;
    std::map<std::string, Value> keywords;

    void Begin()
    {
        cursor = required = requested = error = gets = byKeyword = failure = miss = 0;
        optional = false;
        found = expected = current = "";
        unconsumed.clear();
        for (const auto& [name, value] : keywords) {
            unconsumed.push_back(name);
        }
    }

    int Get(Kind kind, const std::string& keyword)
    {
        const Value* taken = nullptr;
        const auto pending = std::find(unconsumed.begin(), unconsumed.end(), keyword);
        const bool isPending = pending != unconsumed.end();
        const bool isSupplied = error == 0 && cursor < static_cast<int>(positional.size());
        if (isSupplied || keyword.empty()) {
            const Value* const value = isSupplied ? &positional[static_cast<std::size_t>(cursor)] : nullptr;
            if (isSupplied && value->kind == kind) {
                taken = value;
            } else if (isSupplied) {
                error = cursor + 1;
                expected = positionalTargets[kind];
                found = positionalValues[value->kind];
            }
            ++cursor, ++gets, ++requested, required += optional ? 0 : 1;
            return taken != nullptr ? taken->number : -1;
        }
        if (error == 0 && isPending) {
            if (const Value& value = keywords.at(keyword); value.kind == kind) {
                taken = &value;
            } else {
                error = failure = gets + 1;
                expected = keywordTargets[kind];
                found = keywordValues[value.kind];
                current = keyword;
            }
        } else if (error == 0) {
            expected = found = "Undetermined";
            current = keyword;
            (optional ? miss : failure) = gets + 1;
            error = optional ? 0 : gets + 1;
        }
        ++gets, ++requested, required += optional ? 0 : 1;
        if (isPending) {
            byKeyword += optional ? 0 : 1;
            unconsumed.erase(pending);
        }
        return taken != nullptr ? taken->number : -1;
    }

    bool ErrorOnPrevious() const { return (failure != 0 && failure == gets) || (miss != 0 && miss == gets); }

    bool Alternative()
    {
        if (ErrorOnPrevious()) {
            required -= optional ? 0 : 1;
            miss = failure = error = 0;
            found = expected = "";
            if (keywords.contains(current)) {
                byKeyword -= optional ? 0 : 1;
                unconsumed.push_back(current);
            }
            current = "";
            --gets, --requested;
            return true;
        }
        if (failure != 0 || gets > static_cast<int>(positional.size()) || error == 0 || error != cursor) {
            return false;
        }
        --cursor, --requested, --gets, required -= optional ? 0 : 1;
        error = 0;
        found = expected = "";
        return true;
    }

    bool Error() const
    {
        const int count = static_cast<int>(positional.size());
        return !unconsumed.empty() || error != 0 || count + byKeyword < required ||
               count + static_cast<int>(keywords.size()) > requested;
    }

    std::string End() const
    {
        const int count = static_cast<int>(positional.size());
        if (!unconsumed.empty()) {
            return "256 fkeyword error on " + unconsumed.front();
        }
        const std::string words = "; found " + found + ", expecting " + expected;
        if (error != 0 && current.empty()) {
            return "262 f[" + std::to_string(error - 1) + "]" + words;
        }
        if (error != 0 && found != "Undetermined" && expected != "Undetermined") {
            return "268 f['" + current + "']" + words;
        }
        const auto counts = [](int wanted, int given) {
            return "; expected " + std::to_string(wanted) + ", got " + std::to_string(given);
        };
        if (count + byKeyword < required) {
            return "276 f; not all required arguments specified" + counts(required, count + byKeyword);
        }
        const int all = count + static_cast<int>(keywords.size());
        return all > requested ? "282 f; too many arguments" + counts(requested, all) : "";
    }

    bool optional = false;

private:
    int cursor = 0, required = 0, requested = 0, error = 0, gets = 0, byKeyword = 0, failure = 0, miss = 0;
    std::string found, expected, current;
    std::vector<std::string> unconsumed;
};

std::string EndOf(omu_Arguments& arguments)
{
    try {
        arguments.End("f");
    } catch (const omu_TypeErrorException& error) {
        EXPECT_EQ(error.File(), "source/omu/impl/omu_Arguments");
        return std::to_string(error.Line()) + " " + error.JournalMessage().AsCharPtr();
    }
    return "";
}

class RandomCall
{
public:
    explicit RandomCall(unsigned int seed) : m_random(seed)
    {
        const int positional = Below(4);
        m_arguments = omu_Arguments(positional);
        for (int i = 0; i < positional; ++i) {
            m_model.positional.push_back(AnyValue());
            m_arguments.Put(Held(m_model.positional.back()));
        }
        for (int i = Below(4); i > 0; --i) {
            const std::string name = AnyName();
            const Value value = AnyValue();
            m_model.keywords[name] = value;
            m_arguments.Put(Held(value), cow_String(name));
        }
    }

    void Check()
    {
        m_arguments.Begin();
        m_model.Begin();
        EXPECT_FALSE(m_arguments.Alternative()) << "nothing was fetched yet";
        for (int parameters = Below(6); parameters > 0; --parameters) {
            if (Below(3) == 0) {
                m_arguments.Optional();
                m_model.optional = true;
            }
            Fetch();
            while (Below(2) == 0 && !::testing::Test::HasFailure()) {
                const bool again = m_arguments.Alternative();
                ASSERT_EQ(again, m_model.Alternative());
                if (again) {
                    Fetch();
                }
            }
        }
        const std::string end = m_model.End();
        EXPECT_EQ(m_arguments.Error(), !end.empty());
        EXPECT_EQ(EndOf(m_arguments), end);
    }

private:
    int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }
    Value AnyValue()
    {
        const Kind kind = static_cast<Kind>(Below(KINDS));
        return {kind, Below(4)};
    }
    std::string AnyName() { return std::string(1, static_cast<char>('a' + Below(5))); }

    void Fetch()
    {
        const Kind kind = static_cast<Kind>(Below(KINDS));
        const std::string name = Below(4) == 0 ? "" : AnyName();
        EXPECT_EQ(name.empty() ? ::Fetch(m_arguments, kind) : ::Fetch(m_arguments, kind, cow_String(name)),
                  m_model.Get(kind, name));
        EXPECT_EQ(m_arguments.ErrorOnPrevious(), m_model.ErrorOnPrevious());
        EXPECT_EQ(m_arguments.Error(), m_model.Error());
    }

    std::mt19937 m_random;
    omu_Arguments m_arguments;
    Model m_model;
};

} // namespace

TEST(Arguments, Random_calls_of_random_signatures_agree_with_the_rules)
{
    for (unsigned int seed = 0; seed < 5000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomCall call(seed);
        call.Check();
        call.Check(); // Begin starts over
    }
}
