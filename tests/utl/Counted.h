#pragma once

#include "StreamChecks.h"
#include "cow_CloneCount.h"
#include "cow_String.h"

/// An item that counts its objects and copies, throws from the copy that is due, cannot be default-constructed, and
/// knows its own address, so that moving its bytes instead of it would show.
class Counted
{
public:
    struct CopyFailed
    {};
    static constexpr int NEVER = std::numeric_limits<int>::max();
    static inline int alive = 0;
    static inline int copies = 0;
    static inline int copiesLeft = NEVER;

    Counted(int value) : m_value(value) { ++alive; }
    Counted(const Counted& other) : m_value(other.Value())
    {
        if (copiesLeft-- == 0) {
            throw CopyFailed();
        }
        ++copies;
        ++alive;
    }
    Counted(Counted&& other) noexcept : m_value(std::exchange(other.m_value, -1)) { ++alive; }
    Counted& operator=(const Counted& other)
    {
        *this = Counted(other);
        return *this;
    }
    Counted& operator=(Counted&& other) noexcept
    {
        m_value = std::exchange(other.m_value, -1);
        return *this;
    }
    ~Counted() { --alive; }

    int Value() const { return m_self == this ? m_value : std::numeric_limits<int>::min(); }
    friend bool operator==(const Counted& left, const Counted& right) { return left.Value() == right.Value(); }
    friend auto operator<=>(const Counted& left, const Counted& right) { return left.Value() <=> right.Value(); }

private:
    int m_value;
    const Counted* m_self = this;
};

/// A test at whose end no Counted is left or lost.
class CountedTest : public testing::Test
{
protected:
    ~CountedTest() override { EXPECT_EQ(Counted::alive, m_aliveBefore); }

private:
    const int m_aliveBefore = Counted::alive;
};

/// Counts the clones made of a T while it lives; in builds that do not count them, what is expected.
template <class T> class Clones
{
public:
#ifdef VEXUTL_COUNT_CLONES
    bool Are(std::uint64_t expected) const { return cow_cloneCount<T> == m_before + expected; }

private:
    const std::uint64_t m_before = cow_cloneCount<T>;
#else
    bool Are(std::uint64_t) const { return true; }
#endif
};

/// Random changes of three containers that share their memory, each beside a model: `change` gets one of them and another,
/// or the same, both with their models.
template <class Container, class Model, class Change, class Check>
void RunBesideModels(unsigned seed, int steps, Change change, Check check)
{
    std::mt19937 random(seed);
    std::array<Container, 3> containers;
    std::array<Model, 3> models;
    for (int step = 0; step < steps; ++step) {
        const std::size_t a = random() % 3, b = random() % 3;
        if (const auto what = random() % 20; what == 0) {
            containers[a] = containers[b];
            models[a] = models[b];
            EXPECT_TRUE(containers[a].SharesWith(containers[b]));
        } else if (what == 1 && a != b) {
            containers[a] = std::move(containers[b]);
            containers[b] = Container(); // one that was moved from may hold anything
            models[a] = std::exchange(models[b], {});
        } else {
            change(random, containers[a], models[a], containers[b], models[b]);
        }
        const bool isShared = containers[a].SharesWith(containers[b]);
        for (std::size_t i = 0; i < 3; ++i) {
            check(containers[i], models[i]);
        }
        EXPECT_EQ(containers[a].SharesWith(containers[b]), isShared) << "reading never clones";
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << ", step " << step;
    }
}

/// The same items in memory of their own.
template <class Container> Container Unshared(const Container& source)
{
    Container made;
    for (const auto& item : source) {
        if constexpr (requires { made.Append(item); }) {
            made.Append(item);
        } else {
            made.Insert(item.first, item.second);
        }
    }
    return made;
}

/// Runs `change` on a shared and on an unshared copy of `start`, the first copy of an item failing, then the second and
/// so on until none fails. A change that fails leaves all as it was.
template <class Container, class Change> void ExpectAllOrNothing(const Container& start, Change change)
{
    const Container before = Unshared(start);
    bool failed = true;
    for (int failing = 0; failed; ++failing) {
        failed = false;
        Container targets[] = {start, Unshared(start)};
        for (Container& target : targets) {
            Counted::copiesLeft = failing;
            try {
                change(target);
                EXPECT_GE(Counted::copiesLeft, 0) << "copy " << failing << " failed unnoticed";
            } catch (const Counted::CopyFailed&) {
                Counted::copiesLeft = Counted::NEVER;
                failed = true;
                EXPECT_TRUE(Unshared(target) == before) << "copy " << failing;
            }
            Counted::copiesLeft = Counted::NEVER;
        }
        EXPECT_TRUE(start == before) << "copy " << failing;
    }
}
