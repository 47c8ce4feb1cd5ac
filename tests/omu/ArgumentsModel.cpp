// Random calls of random signatures, checked against the protocol as its rules say it, with lists of names and counters.

#include "omu_Arguments.h"
#include "omu_PrimList.h"
#include "omu_TypeErrorException.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{

enum Kind
{
    INT,
    DOUBLE,
    TEXT,
    BOOL,
    INTS,
    KINDS
};

struct Value
{
    Kind kind; // BOOL: an integer 0 or 1
    int number;
};

struct KindNames
{
    const char* positional;
    const char* keyword;
};
constexpr KindNames wantedNames[KINDS] = {{"int32", "number"},
                                          {"number", "number"},
                                          {"string", "string"},
                                          {"boolean", "0 or 1"},
                                          {"sequence of Integers", "sequence of Integers"}};
constexpr const char* positionalNames[KINDS] = {"number", "number", "string", "number", "list"};
constexpr const char* elementAwareNames[KINDS] = {"number", "number", "string", "number", "sequence of Integers"};

bool Fits(const Value& value, Kind wanted)
{
    switch (wanted) {
    case INT:
        return value.kind == INT || value.kind == BOOL;
    case DOUBLE:
        return value.kind != TEXT && value.kind != INTS;
    case BOOL:
        return value.kind == BOOL || (value.kind == INT && (value.number == 0 || value.number == 1));
    default:
        return value.kind == wanted;
    }
}

omu_PrimHolder Held(const Value& value)
{
    switch (value.kind) {
    case DOUBLE:
        return omu_Hold(0.5 + value.number);
    case TEXT:
        return omu_Hold(cow_String(value.number));
    case INTS: {
        auto list = std::make_unique<omu_PrimList>(1);
        list->Put(value.number);
        return omu_PrimHolder(list.release());
    }
    default:
        return omu_Hold(value.number);
    }
}

/// Fetches a target of the kind; what it holds then, as text.
template <class... Name> std::string Fetch(omu_Arguments& arguments, Kind kind, const Name&... name)
{
    const auto fetch = [&]<class T>(T target, auto textOf) {
        arguments.Get(target, name...);
        return std::string(textOf(target));
    };
    switch (kind) {
    case INT:
        return fetch(-1, [](int value) { return std::to_string(value); });
    case DOUBLE:
        return fetch(-1.0, [](double value) { return std::to_string(value); });
    case TEXT:
        return fetch(cow_String("preset"), [](const cow_String& value) { return value.view(); });
    case BOOL:
        return fetch(false, [](bool value) { return value ? "yes" : "no"; });
    default:
        return fetch(cow_List<int>{-1}, [](const cow_List<int>& value) { return std::to_string(value[0]); });
    }
}

/// What a target of the kind holds with `value`; null: the preset one.
std::string Expected(Kind kind, const Value* value)
{
    const int number = value != nullptr ? value->number : -1;
    switch (kind) {
    case DOUBLE:
        return std::to_string(number + (value != nullptr && value->kind == DOUBLE ? 0.5 : 0.0));
    case TEXT:
        return value != nullptr ? std::to_string(number) : "preset";
    case BOOL:
        return number == 1 ? "yes" : "no";
    default:
        return std::to_string(number);
    }
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

    std::string Get(Kind kind, const std::string& keyword)
    {
        const Value* taken = nullptr;
        const auto pending = std::find(unconsumed.begin(), unconsumed.end(), keyword);
        const bool isPending = pending != unconsumed.end();
        if (error == 0 && cursor < static_cast<int>(positional.size())) {
            const Value& value = positional[static_cast<std::size_t>(cursor)];
            if (Fits(value, kind)) {
                taken = &value;
            } else {
                error = cursor + 1;
                expected = wantedNames[kind].positional;
                found = positionalNames[value.kind];
            }
            ++cursor, ++gets, ++requested, required += optional ? 0 : 1;
            return Expected(kind, taken);
        }
        if (error == 0 && isPending) {
            if (const Value& value = keywords.at(keyword); Fits(value, kind)) {
                taken = &value;
            } else {
                error = failure = gets + 1;
                expected = wantedNames[kind].keyword;
                found = elementAwareNames[value.kind];
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
        return Expected(kind, taken);
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
        return {kind, kind == BOOL ? Below(2) : Below(4)};
    }
    std::string AnyName() { return std::string(1, static_cast<char>('a' + Below(5))); }

    void Fetch()
    {
        const Kind kind = static_cast<Kind>(Below(KINDS));
        const std::string name = AnyName();
        EXPECT_EQ(::Fetch(m_arguments, kind, cow_String(name)), m_model.Get(kind, name));
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
