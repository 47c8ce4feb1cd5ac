#include "cls_Module.h"
#include "cls_xip1DArrayList.h"
#include "nex_TextException.h"
#include "obj_Stream.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>

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
    bio_Ofilter m_out;

private:
    int m_count = 0;
};

TEST_F(ArrayList, A_stream_has_the_promised_bytes)
{
    m_out << FloatList({Floats{1.0f}});
    const unsigned char promised[] = {0x01, 0, 0x23, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0x80, 0x3F};
    ASSERT_EQ(m_out.Size(), sizeof promised);
    EXPECT_TRUE(std::equal(std::begin(promised), std::end(promised), m_out.Data()));
}

TEST_F(ArrayList, Comes_back_from_a_stream_as_pointer_and_as_object)
{
    m_out << &m_list << m_list << static_cast<const FloatList*>(nullptr);
    bio_Ifilter in(m_out.Data(), m_out.Size());
    FloatList* made = nullptr;
    FloatList existing;
    const cls_Uid kept = existing.Uid();
    in >> made >> existing;
    EXPECT_EQ(made->Arrays(), m_list.Arrays());
    EXPECT_NE(made->Uid(), m_list.Uid());
    EXPECT_EQ(existing.Arrays(), m_list.Arrays());
    EXPECT_EQ(existing.Uid(), kept);
    cls_xip1DArrayList<float>::DtorFunc(made);
    in >> made;
    EXPECT_EQ(made, nullptr);
    EXPECT_TRUE(in.AtEnd());
}

TEST_F(ArrayList, A_deep_copy_has_the_arrays_and_a_uid_of_its_own)
{
    const std::unique_ptr<FloatList> copy(static_cast<FloatList*>(obj_DeepCopyP0Ptr(&m_list, 0x230001)));
    EXPECT_EQ(copy->Arrays(), m_list.Arrays());
    EXPECT_NE(copy->Uid(), m_list.Uid());
}

TEST_F(ArrayList, Every_truncation_and_flipped_bit_ends_in_an_exception_or_a_list)
{
    m_out << &m_list;
    const std::string bytes(reinterpret_cast<const char*>(m_out.Data()), m_out.Size());
    const auto read = [](const std::string& damaged) {
        bio_Ifilter in(damaged.data(), damaged.size());
        FloatList* list = nullptr;
        in >> list;
        delete list;
    };
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        EXPECT_THROW(read(bytes.substr(0, length)), nex_TextException) << length;
    }
    for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        std::string damaged = bytes;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
        try {
            read(damaged);
        } catch (const nex_TextException& failure) {
            EXPECT_NE(failure.AsString().Find(" at offset "), -1) << failure.what();
        }
    }
}

TEST_F(ArrayList, Is_dumped_under_its_name)
{
    std::ostringstream text;
    pnt_PrettyPrint dump(text);
    dump << FloatList({Floats{1.5f}});
    EXPECT_EQ(text.str(), "(cls_xip1DArrayList\n  (cow_List\n    (cow_1DArray\n      1.5\n    )\n  )\n)");
}
} // namespace
