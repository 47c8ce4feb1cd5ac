#include "Counted.h"
#include "cow_ArrayCOW.h"
#include "cow_COW.h"
#include "cow_CountedHld.h"
#include "thr_RefCount.h"

namespace
{
using Holders = CountedTest;

/// A polymorphic object that carries the count of its holders.
class Shape
{
public:
    Shape() = default;
    Shape(const Shape& other) : size(other.size) {}
    virtual ~Shape() = default;
    virtual Shape* Copy() const { return nullptr; }
    void CowRaise() const noexcept { m_holders.Raise(); }
    bool CowLower() const noexcept { return m_holders.Lower(); }
    bool CowIsUnique() const noexcept { return m_holders.IsUnique(); }

    Counted size = 1;

private:
    mutable thr_RefCount m_holders{0};
};

class Circle : public Shape
{
public:
    Shape* Copy() const override { return new Circle(*this); }
};
} // namespace

TEST_F(Holders, A_counted_holder_shares_one_object)
{
    cow_CountedHld<Counted> first = cow_CountedHld<Counted>::Make(1);
    cow_CountedHld<Counted> second(first);
    *second = Counted(2);
    EXPECT_TRUE(first->Value() == 2 && first.UseCount() == 2);
    second = second;
    first = std::move(second);
    EXPECT_TRUE(first.UseCount() == 1 && second.IsNull()); // NOLINT: a moved-from holder holds nothing
}

TEST_F(Holders, Reading_never_clones_and_only_the_first_write_to_a_shared_object_does)
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

    EXPECT_EQ(cow_COW<int>().Get(), nullptr);
}

TEST_F(Holders, A_polymorphic_object_is_cloned_by_its_own_type)
{
    cow_ArrayCOW<Shape> first(new Circle);
    cow_ArrayCOW<Shape> second(first);
    Counted::copies = 0;
    EXPECT_TRUE(first.SharesWith(second));
    first.Get()->size = 2;
    EXPECT_EQ(Counted::copies, 1);
    EXPECT_NE(dynamic_cast<const Circle*>(first.ConstGet()), nullptr);
    EXPECT_EQ(second.Get()->size, Counted(1));
    EXPECT_EQ(Counted::copies, 1);
    second = first;
}
