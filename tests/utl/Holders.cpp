#include "Counted.h"
#include "cow_ArrayCOW.h"
#include "cow_COW.h"
#include "cow_CountedHld.h"
#include "thr_RefCount.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{
/// A polymorphic object that carries the count of its holders.
class Shape
{
public:
    Shape() = default;
    Shape(const Shape&) {}
    Shape& operator=(const Shape&) = delete;
    virtual ~Shape() = default;
    virtual Shape* Copy() const = 0;
    virtual Counted& Size() = 0;

    void CowRaise() const noexcept { m_holders.Raise(); }
    bool CowLower() const noexcept { return m_holders.Lower(); }
    bool CowIsUnique() const noexcept { return m_holders.IsUnique(); }

private:
    mutable thr_RefCount m_holders{0};
};

class Circle : public Shape
{
public:
    Shape* Copy() const override { return new Circle(*this); }
    Counted& Size() override { return m_size; }

private:
    Counted m_size = 1;
};
} // namespace

TEST(Holders, A_counted_holder_shares_one_object)
{
    const int aliveBefore = Counted::alive;
    {
        cow_CountedHld<Counted> first = cow_CountedHld<Counted>::Make(1);
        cow_CountedHld<Counted> second(first);
        *second = Counted(2);
        EXPECT_EQ(first->Value(), 2);
        EXPECT_EQ(first.UseCount(), 2u);
        second = second;
        first = std::move(second);
        EXPECT_EQ(first.UseCount(), 1u);
        EXPECT_EQ(second.get(), nullptr); // NOLINT: a moved-from holder holds nothing
        EXPECT_EQ(Counted::alive, aliveBefore + 1);
    }
    EXPECT_EQ(Counted::alive, aliveBefore);
}

TEST(Holders, Reading_never_clones_and_only_the_first_write_to_a_shared_object_does)
{
    const int aliveBefore = Counted::alive;
    {
        cow_COW<Counted> first(Counted(1));
        const cow_COW<Counted> second(first);
        Counted::copies = 0;
        EXPECT_EQ(first.ConstGet(), second.ConstGet());
        EXPECT_EQ(Counted::copies, 0);
        *first.Get() = 2;
        *first.Get() = 3;
        EXPECT_EQ(Counted::copies, 1);
        EXPECT_EQ(second->Value(), 1);

        cow_COW<Counted> third(second);
        Counted::copiesLeft = 0;
        EXPECT_THROW(third.Get(), Counted::CopyFailed);
        Counted::copiesLeft = Counted::NEVER;
        EXPECT_TRUE(third.SharesWith(second));

        cow_COW<int> number(5);
        const cow_COW<int> same(number);
        *number.Get() = 6;
        EXPECT_EQ(*same, 5);
        EXPECT_EQ(cow_COW<int>().Get(), nullptr);
    }
    EXPECT_EQ(Counted::alive, aliveBefore);
}

TEST(Holders, A_polymorphic_object_is_cloned_by_its_own_type)
{
    const int aliveBefore = Counted::alive;
    {
        cow_ArrayCOW<Shape> first(new Circle);
        cow_ArrayCOW<Shape> second(first);
        Counted::copies = 0;
        EXPECT_TRUE(first.SharesWith(second));
        first.Get()->Size() = 2;
        EXPECT_EQ(Counted::copies, 1);
        EXPECT_NE(dynamic_cast<const Circle*>(first.ConstGet()), nullptr);
        EXPECT_EQ(second.Get()->Size(), Counted(1));
        EXPECT_EQ(Counted::copies, 1);
        second = first;
        EXPECT_EQ(Counted::alive, aliveBefore + 1);
    }
    EXPECT_EQ(Counted::alive, aliveBefore);
}
