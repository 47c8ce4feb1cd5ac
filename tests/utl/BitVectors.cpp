#include "Counted.h"
#include "omi_BlkBitVect.h"

namespace
{
using Model = std::set<std::uint32_t>;

/// Bits around every border of words, blocks and ranges, and at both ends.
const Model BORDERS = {0,     63,    64,    1023,   1024,       65535,      65536,
                       65599, 66560, 70000, 131071, 2147483647, 4294967294, 4294967295};

omi_BlkBitVect Bits(const Model& model)
{
    omi_BlkBitVect bits;
    for (const std::uint32_t bit : model) {
        bits.Set(bit);
    }
    return bits;
}

std::vector<std::uint32_t> Ascending(const omi_BlkBitVect& bits)
{
    std::vector<std::uint32_t> found;
    for (omi_BlkBitVectTrav bit(bits); !bit.IsDone(); bit.Next()) {
        found.push_back(bit.Current());
    }
    return found;
}

/// All that the vector says of itself must agree with the model.
void Check(const omi_BlkBitVect& bits, const Model& model)
{
    EXPECT_EQ(bits.Count(), model.size());
    EXPECT_EQ(bits.IsEmpty(), model.empty());
    EXPECT_TRUE(std::ranges::equal(Ascending(bits), model));
    omi_BlkBitVectTrav down(bits);
    down.Last();
    for (auto bit = model.rbegin(); bit != model.rend(); ++bit, down.Previous()) {
        ASSERT_EQ(down.Current(), *bit);
    }
    EXPECT_TRUE(down.IsDone());
    EXPECT_EQ(bits, Bits(model));
}

void CheckNeighbours(const omi_BlkBitVect& bits, const Model& model, std::uint32_t bit)
{
    const auto next = model.lower_bound(bit);
    EXPECT_EQ(bits.NextSet(bit), next == model.end() ? omi_BlkBitVect::NONE : std::int64_t{*next}) << bit;
    const auto behind = model.upper_bound(bit);
    EXPECT_EQ(bits.PreviousSet(bit), behind == model.begin() ? omi_BlkBitVect::NONE : std::int64_t{*std::prev(behind)})
        << bit;
    EXPECT_EQ(bits.IsSet(bit), model.contains(bit)) << bit;
}
} // namespace

TEST(BitVector, Borders_are_bits_like_all_others)
{
    const omi_BlkBitVect bits = Bits(BORDERS);
    Check(bits, BORDERS);
    for (const std::uint32_t bit : BORDERS) {
        for (const std::uint32_t near : {bit - 1, bit, bit + 1}) {
            CheckNeighbours(bits, BORDERS, near);
        }
        omi_BlkBitVect less = bits;
        Model model = BORDERS;
        model.erase(bit);
        EXPECT_TRUE(less.Unset(bit));
        EXPECT_FALSE(less.Unset(bit));
        Check(less, model);
    }
}

TEST(BitVector, Random_operations_agree_with_a_set)
{
    for (const std::uint32_t range : {500U, 200000U, 4294967295U}) {
        int step = 0;
        const auto change = [&](auto& random, auto& bits, Model& model, const auto& other, const Model& otherModel) {
            const auto bit = static_cast<std::uint32_t>(random() % range);
            if (const auto what = random() % 16; what == 0) {
                EXPECT_EQ(bits.Unset(bit), model.erase(bit) == 1);
            } else if (what == 1) {
                bits.And(other);
                std::erase_if(model, [&](std::uint32_t each) { return !otherModel.contains(each); });
            } else if (what == 2) {
                bits.Or(other);
                model.insert(otherModel.begin(), otherModel.end());
            } else if (what == 3) {
                bits.AndNot(other);
                std::erase_if(model, [&](std::uint32_t each) { return otherModel.contains(each); });
            } else {
                EXPECT_EQ(bits.Set(bit), model.insert(bit).second);
            }
            CheckNeighbours(bits, model, static_cast<std::uint32_t>(random() % range));
            ++step;
        };
        const auto check = [&step](const omi_BlkBitVect& bits, const Model& model) {
            if (step % 16 == 0) {
                Check(bits, model);
                omi_BlkBitVect read;
                EXPECT_EQ(ReadFrom(BytesOf(bits), read), "");
                EXPECT_EQ(read, bits);
            }
        };
        RunBesideModels<omi_BlkBitVect, Model>(range, 3000, change, check);
    }
}

TEST(BitVector, Copies_share_until_a_write_that_changes_something)
{
    const omi_BlkBitVect bits = Bits(BORDERS);
    omi_BlkBitVect copy = bits;
    const Clones<omi_BlkBitVect> clones;
    EXPECT_FALSE(copy.Set(63) || copy.Unset(62));
    EXPECT_TRUE(copy.SharesWith(bits));
    EXPECT_TRUE(copy.Set(62) && copy.Set(61));
    EXPECT_TRUE(clones.Are(1));
}

TEST(BitVector, A_traversal_sees_the_bits_of_its_start)
{
    omi_BlkBitVect bits = Bits({1, 5, 64, 4294967295});
    std::vector<std::uint32_t> seen;
    for (omi_BlkBitVectTrav bit(bits); !bit.IsDone(); bit.Next()) {
        seen.push_back(bit.Current());
        bits.Unset(bit.Current());
        bits.Set(bit.Current() + 1);
    }
    EXPECT_EQ(seen, (std::vector<std::uint32_t>{1, 5, 64, 4294967295}));
    Check(bits, {0, 2, 6, 65});

    omi_BlkBitVectTrav bit(bits);
    bit.From(3);
    EXPECT_EQ(bit.Current(), 6U);
    bit.Previous();
    EXPECT_EQ(bit.Current(), 2U);
    bit.From(66);
    bit.Next();
    bit.Previous();
    EXPECT_TRUE(bit.IsDone());
}

TEST(BitVector, A_stream_holds_only_the_words_in_use_and_a_dump_shows_runs)
{
    const omi_BlkBitVect alone = Bits({2147483647});
    EXPECT_EQ(BytesOf(alone), std::string("\1\0\0\0\xFF\xFF\x1F\0\0\x80\0\0\0\0\0\0\0\x80", 18));
    ExpectStreamed(alone);
    ExpectStreamed(Bits(BORDERS));
    omi_BlkBitVect read = alone;
    EXPECT_EQ(ReadFrom(std::string("\1\0\0\0", 4), read), "a count larger than the rest of the stream at offset 0");
    EXPECT_TRUE(read.SharesWith(alone));

    EXPECT_EQ(DumpOf(Bits({3, 7, 8, 9, 63, 64, 4294967294, 4294967295})), "3 7-9 63-64 4294967294-4294967295");
    EXPECT_EQ(DumpOf(omi_BlkBitVect()), "");
}

TEST(BitVector, Blocks_out_of_order_or_empty_are_refused)
{
    const std::tuple<const char*, std::array<std::uint32_t, 2>, std::uint16_t, std::uint64_t, const char*> rows[] = {
        {"ascending", {1, 2}, 1, 7, ""},
        {"twice", {1, 1}, 1, 7, "a damaged block of bits at offset 18"},
        {"descending", {2, 1}, 1, 7, "a damaged block of bits at offset 18"},
        {"last block", {1, 0x3FFFFF}, 1, 7, ""},
        {"no such block", {1, 0x400000}, 1, 7, "a damaged block of bits at offset 18"},
        {"no word", {1, 2}, 0, 7, "a damaged block of bits at offset 4"},
        {"empty word", {1, 2}, 1, 0, "a damaged block of bits at offset 4"}};
    for (const auto& [name, numbers, used, word, refusal] : rows) {
        std::string bytes = BytesOf(std::uint32_t{2});
        for (const std::uint32_t number : numbers) {
            bytes += BytesOf(number) + BytesOf(used) + BytesOf(word);
        }
        omi_BlkBitVect bits;
        EXPECT_EQ(ReadFrom(bytes, bits), refusal) << name;
    }
}
