#include "MementoDouble.h"
#include "cls_Module.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "cls_xip1DArrayList.h"
#include "obj_Stream.h"
#include "utl/StreamChecks.h"

namespace
{
using FloatList = cls_xp1DArrayList<float>;
using Floats = cow_1DArray<float>;

class ArrayList : public testing::Test
{
protected:
    ArrayList() { cls_initialize(m_count); }
    ~ArrayList() override { cls_finalize(m_count); }

    const FloatList m_list{{Floats{1.5f, -2.0f}, Floats(), Floats{std::numeric_limits<float>::infinity()}}};

private:
    int m_count = 0;
};

TEST_F(ArrayList, A_stream_has_the_promised_bytes_and_makes_a_list_with_a_uid_of_its_own)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(BytesOf(FloatList({Floats{1.0f}})), "\1\0\x23\0\1\0\0\0\1\0\0\0\0\0\x80\x3F"sv);
    EXPECT_EQ(BytesOf(static_cast<const FloatList*>(nullptr)), "\0\0\0\0"sv);

    const std::string bytes = BytesOf(&m_list);
    FloatList* built = nullptr;
    ASSERT_EQ(ReadFrom(bytes, built), "");
    const std::unique_ptr<FloatList> owned(built);
    const std::unique_ptr<FloatList> copy(static_cast<FloatList*>(obj_DeepCopyP0Ptr(&m_list, 0x230001)));
    for (const FloatList* const list : {built, copy.get()}) {
        EXPECT_EQ(list->Arrays(), m_list.Arrays());
        EXPECT_NE(list->Uid(), m_list.Uid());
    }
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        EXPECT_NE(ReadFrom(bytes.substr(0, length), built), "") << "cut to " << length;
    }
}

TEST_F(ArrayList, Keeps_its_uid_when_a_stream_is_read_into_it)
{
    FloatList list({Floats{3.0f}});
    const cls_Uid uid = list.Uid();
    EXPECT_EQ(ReadFrom(BytesOf(m_list), list), "");
    EXPECT_EQ(list.Arrays(), m_list.Arrays());
    EXPECT_EQ(list.Uid(), uid);
    EXPECT_NE(ReadFrom(BytesOf(m_list).substr(0, 10), list), "");
    EXPECT_EQ(list.Arrays(), m_list.Arrays());
}

// What a record does with a list is tested with the engine.
TEST_F(ArrayList, A_record_without_a_list_is_refused_and_none_gives_an_empty_list)
{
    EXPECT_EQ(RefusalOf([&] { m_list.DBWrite(cls_WriteVisitor(new MementoWriteDouble)); }),
              "In cls_xp1DArrayList::DBWrite() Missing writer.");
    EXPECT_EQ(RefusalOf([] { FloatList{cls_ReadVisitor(new MementoReadDouble)}; }),
              "In cls_xp1DArrayList::cls_xp1DArrayList() Missing reader.");
    EXPECT_TRUE(FloatList(cls_ReadVisitor(nullptr)).Arrays().IsEmpty());
}
} // namespace
