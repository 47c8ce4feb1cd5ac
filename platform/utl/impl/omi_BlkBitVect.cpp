#include "omi_BlkBitVect.h"

#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "cow_CloneCount.h"
#include "pnt_PrettyPrint.h"
#include "thr_RefCount.h"

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
#include <vector>

namespace
{
constexpr std::uint32_t WORD_BITS = 64;
constexpr std::uint32_t BLOCK_WORDS = 16;
constexpr std::uint32_t BLOCK_BITS = WORD_BITS * BLOCK_WORDS;
constexpr std::uint32_t RANGE_BLOCKS = 64;
constexpr std::uint32_t RANGE_BITS = BLOCK_BITS * RANGE_BLOCKS;
constexpr std::uint32_t BLOCK_NUMBERS = 0x100000000 / BLOCK_BITS;
constexpr std::int64_t NONE = omi_BlkBitVect::NONE;

using Block = std::array<std::uint64_t, BLOCK_WORDS>;

std::uint64_t Mask(std::uint32_t index)
{
    return std::uint64_t{1} << index % 64;
}

/// All bits of a word from `index` upwards.
std::uint64_t MaskFrom(std::uint32_t index)
{
    return ~std::uint64_t{0} << index % 64;
}

/// All bits of a word up to and including `index`.
std::uint64_t MaskUpTo(std::uint32_t index)
{
    return ~std::uint64_t{0} >> (63 - index % 64);
}

std::uint32_t Lowest(std::uint64_t word)
{
    return static_cast<std::uint32_t>(std::countr_zero(word));
}

std::uint32_t Highest(std::uint64_t word)
{
    return static_cast<std::uint32_t>(63 - std::countl_zero(word));
}

bool IsZero(const Block& block)
{
    return block == Block{};
}

std::uint64_t Population(const Block& block)
{
    std::uint64_t count = 0;
    for (const std::uint64_t word : block) {
        count += static_cast<std::uint64_t>(std::popcount(word));
    }
    return count;
}

std::int64_t NextIn(const Block& block, std::uint32_t from)
{
    std::uint32_t index = from / WORD_BITS;
    std::uint64_t word = block[index] & MaskFrom(from);
    while (word == 0 && ++index < BLOCK_WORDS) {
        word = block[index];
    }
    return word != 0 ? std::int64_t{index} * WORD_BITS + Lowest(word) : NONE;
}

std::int64_t PreviousIn(const Block& block, std::uint32_t from)
{
    std::uint32_t index = from / WORD_BITS;
    std::uint64_t word = block[index] & MaskUpTo(from);
    while (word == 0 && index-- > 0) {
        word = block[index];
    }
    return word != 0 ? std::int64_t{index} * WORD_BITS + Highest(word) : NONE;
}

/// A range of 64 neighbouring blocks.
struct Range
{
    // Invariant: as many blocks as bits in `present`, in ascending order.
    std::uint64_t present = 0; // bit i: block i of the range exists
    std::vector<Block> blocks;

    bool Has(std::uint32_t index) const { return (present & Mask(index)) != 0; }
    std::size_t Position(std::uint32_t index) const
    {
        const std::uint64_t below = Mask(index) - 1;
        // Counting bits is a slow call on processors without an instruction for it; dense sets never need it.
        return (present & below) == below ? index : static_cast<std::size_t>(std::popcount(present & below));
    }
    const Block* Find(std::uint32_t index) const { return Has(index) ? &blocks[Position(index)] : nullptr; }
    Block& FindOrAdd(std::uint32_t index);
    void Remove(std::uint32_t index);
    std::int64_t Next(std::uint32_t from) const;
    std::int64_t Previous(std::uint32_t from) const;
    bool operator==(const Range&) const = default;
};

Block& Range::FindOrAdd(std::uint32_t index)
{
    const std::size_t position = Position(index);
    if (!Has(index)) {
        blocks.insert(blocks.begin() + static_cast<std::ptrdiff_t>(position), Block{});
        present |= Mask(index);
    }
    return blocks[position];
}

void Range::Remove(std::uint32_t index)
{
    blocks.erase(blocks.begin() + static_cast<std::ptrdiff_t>(Position(index)));
    present &= ~Mask(index);
}

std::int64_t Range::Next(std::uint32_t from) const
{
    std::uint32_t index = from / BLOCK_BITS;
    if (const Block* const block = Find(index)) {
        if (const std::int64_t bit = NextIn(*block, from % BLOCK_BITS); bit != NONE) {
            return std::int64_t{index} * BLOCK_BITS + bit;
        }
    }
    const std::uint64_t later = present & MaskFrom(index) & ~Mask(index);
    if (later == 0) {
        return NONE;
    }
    index = Lowest(later);
    return std::int64_t{index} * BLOCK_BITS + NextIn(blocks[Position(index)], 0);
}

std::int64_t Range::Previous(std::uint32_t from) const
{
    std::uint32_t index = from / BLOCK_BITS;
    if (const Block* const block = Find(index)) {
        if (const std::int64_t bit = PreviousIn(*block, from % BLOCK_BITS); bit != NONE) {
            return std::int64_t{index} * BLOCK_BITS + bit;
        }
    }
    const std::uint64_t earlier = present & (Mask(index) - 1);
    if (earlier == 0) {
        return NONE;
    }
    index = Highest(earlier);
    return std::int64_t{index} * BLOCK_BITS + PreviousIn(blocks[Position(index)], BLOCK_BITS - 1);
}

std::uint32_t RangeNumber(std::uint32_t bit)
{
    return bit / RANGE_BITS;
}

/// Which block of its range holds the bit.
std::uint32_t BlockIndex(std::uint32_t bit)
{
    return bit % RANGE_BITS / BLOCK_BITS;
}

std::uint32_t WordIndex(std::uint32_t bit)
{
    return bit % BLOCK_BITS / WORD_BITS;
}

std::int64_t InRange(std::uint32_t number, std::int64_t bit)
{
    return std::int64_t{number} * RANGE_BITS + bit;
}
} // namespace

// Defined for users of the DLL who bind references to it.
constexpr std::int64_t omi_BlkBitVect::NONE;

struct omi_BlkBitVect::Rep
{
    // A range apart from its number, so that adding one among many moves little.
    struct Slot
    {
        std::uint32_t number;
        std::unique_ptr<Range> range;
    };

    thr_RefCount holders{1};
    std::uint64_t count = 0; // set bits
    // Invariant: ascending by number; no range without blocks, no block without a set bit (but for the one
    // being set).
    std::vector<Slot> slots;

    Rep() = default;
    Rep(const Rep& other);

    std::size_t LowerBound(std::uint32_t number) const noexcept;
    const Range* FindRange(std::uint32_t number) const noexcept;
    const Block* FindBlock(std::uint32_t bit) const noexcept;
    Block& FindOrAddBlock(std::uint32_t bit);
    void RemoveBlock(std::uint32_t bit) noexcept;
};

omi_BlkBitVect::Rep::Rep(const Rep& other) : count(other.count)
{
    slots.reserve(other.slots.size());
    for (const Slot& slot : other.slots) {
        slots.push_back({slot.number, std::make_unique<Range>(*slot.range)});
    }
}

std::size_t omi_BlkBitVect::Rep::LowerBound(std::uint32_t number) const noexcept
{
    // In a dense set the ranges follow each other without a gap.
    if (!slots.empty() && number >= slots.front().number) {
        const std::size_t guess = number - slots.front().number;
        if (guess < slots.size() && slots[guess].number == number) {
            return guess;
        }
    }
    const auto at = std::ranges::lower_bound(slots, number, {}, &Slot::number);
    return static_cast<std::size_t>(at - slots.begin());
}

const Range* omi_BlkBitVect::Rep::FindRange(std::uint32_t number) const noexcept
{
    const std::size_t at = LowerBound(number);
    return at < slots.size() && slots[at].number == number ? slots[at].range.get() : nullptr;
}

const Block* omi_BlkBitVect::Rep::FindBlock(std::uint32_t bit) const noexcept
{
    const Range* const range = FindRange(RangeNumber(bit));
    return range != nullptr ? range->Find(BlockIndex(bit)) : nullptr;
}

Block& omi_BlkBitVect::Rep::FindOrAddBlock(std::uint32_t bit)
{
    const std::uint32_t number = RangeNumber(bit);
    const std::size_t at = LowerBound(number);
    if (at < slots.size() && slots[at].number == number) {
        return slots[at].range->FindOrAdd(BlockIndex(bit));
    }
    auto range = std::make_unique<Range>();
    Block& block = range->FindOrAdd(BlockIndex(bit));
    slots.insert(slots.begin() + static_cast<std::ptrdiff_t>(at), Slot{number, std::move(range)});
    return block;
}

void omi_BlkBitVect::Rep::RemoveBlock(std::uint32_t bit) noexcept
{
    const std::size_t at = LowerBound(RangeNumber(bit));
    slots[at].range->Remove(BlockIndex(bit));
    if (slots[at].range->present == 0) {
        slots.erase(slots.begin() + static_cast<std::ptrdiff_t>(at));
    }
}

omi_BlkBitVect::omi_BlkBitVect(const omi_BlkBitVect& other) noexcept : m_rep(other.m_rep)
{
    if (m_rep != nullptr) {
        m_rep->holders.Raise();
    }
}

omi_BlkBitVect::~omi_BlkBitVect()
{
    if (m_rep != nullptr && m_rep->holders.Lower()) {
        delete m_rep;
    }
}

bool omi_BlkBitVect::IsSet(std::uint32_t bit) const noexcept
{
    return (Word(bit) & Mask(bit)) != 0;
}

std::uint64_t omi_BlkBitVect::Count() const noexcept
{
    return m_rep != nullptr ? m_rep->count : 0;
}

std::int64_t omi_BlkBitVect::NextSet(std::uint32_t from) const noexcept
{
    if (m_rep == nullptr) {
        return NONE;
    }
    const std::uint32_t number = RangeNumber(from);
    std::size_t at = m_rep->LowerBound(number);
    if (at < m_rep->slots.size() && m_rep->slots[at].number == number) {
        if (const std::int64_t bit = m_rep->slots[at].range->Next(from % RANGE_BITS); bit != NONE) {
            return InRange(number, bit);
        }
        ++at;
    }
    return at < m_rep->slots.size() ? InRange(m_rep->slots[at].number, m_rep->slots[at].range->Next(0)) : NONE;
}

std::int64_t omi_BlkBitVect::PreviousSet(std::uint32_t from) const noexcept
{
    if (m_rep == nullptr) {
        return NONE;
    }
    const std::uint32_t number = RangeNumber(from);
    const std::size_t at = m_rep->LowerBound(number);
    if (at < m_rep->slots.size() && m_rep->slots[at].number == number) {
        if (const std::int64_t bit = m_rep->slots[at].range->Previous(from % RANGE_BITS); bit != NONE) {
            return InRange(number, bit);
        }
    }
    if (at == 0) {
        return NONE;
    }
    return InRange(m_rep->slots[at - 1].number, m_rep->slots[at - 1].range->Previous(RANGE_BITS - 1));
}

bool omi_BlkBitVect::Set(std::uint32_t bit)
{
    if (m_rep != nullptr && !m_rep->holders.IsUnique() && IsSet(bit)) {
        return false; // nothing to clone for
    }
    Rep& rep = Detach();
    std::uint64_t& word = rep.FindOrAddBlock(bit)[WordIndex(bit)];
    const bool isNew = (word & Mask(bit)) == 0;
    word |= Mask(bit);
    rep.count += isNew ? 1 : 0;
    return isNew;
}

bool omi_BlkBitVect::Unset(std::uint32_t bit)
{
    if (!IsSet(bit)) {
        return false;
    }
    if (m_rep->count == 1) {
        Clear();
        return true;
    }
    Rep& rep = Detach();
    Block& block = rep.FindOrAddBlock(bit);
    block[WordIndex(bit)] &= ~Mask(bit);
    --rep.count;
    if (IsZero(block)) {
        rep.RemoveBlock(bit);
    }
    return true;
}

void omi_BlkBitVect::And(const omi_BlkBitVect& other)
{
    Restrict(other, [](std::uint64_t mine, std::uint64_t theirs) { return mine & theirs; });
}

void omi_BlkBitVect::AndNot(const omi_BlkBitVect& other)
{
    Restrict(other, [](std::uint64_t mine, std::uint64_t theirs) { return mine & ~theirs; });
}

void omi_BlkBitVect::Or(const omi_BlkBitVect& other)
{
    if (other.IsEmpty() || SharesWith(other)) {
        return;
    }
    if (IsEmpty()) {
        *this = other;
        return;
    }
    Rep& rep = Detach();
    for (const Rep::Slot& slot : other.m_rep->slots) {
        const Block* theirs = slot.range->blocks.data();
        for (std::uint64_t left = slot.range->present; left != 0; left &= left - 1, ++theirs) {
            Block& mine = rep.FindOrAddBlock(slot.number * RANGE_BITS + Lowest(left) * BLOCK_BITS);
            rep.count -= Population(mine);
            for (std::uint32_t word = 0; word < BLOCK_WORDS; ++word) {
                mine[word] |= (*theirs)[word];
            }
            rep.count += Population(mine);
        }
    }
}

bool operator==(const omi_BlkBitVect& left, const omi_BlkBitVect& right) noexcept
{
    if (left.SharesWith(right)) {
        return true;
    }
    if (left.Count() != right.Count()) {
        return false;
    }
    const auto sameRange = [](const auto& mine, const auto& theirs) {
        return mine.number == theirs.number && *mine.range == *theirs.range;
    };
    return left.IsEmpty() || std::ranges::equal(left.m_rep->slots, right.m_rep->slots, sameRange);
}

bio_Ofilter& operator<<(bio_Ofilter& out, const omi_BlkBitVect& bits)
{
    std::uint32_t blockCount = 0;
    if (bits.m_rep != nullptr) {
        for (const auto& slot : bits.m_rep->slots) {
            blockCount += static_cast<std::uint32_t>(slot.range->blocks.size());
        }
    }
    out << blockCount;
    if (blockCount == 0) {
        return out;
    }
    for (const auto& slot : bits.m_rep->slots) {
        const Block* block = slot.range->blocks.data();
        for (std::uint64_t left = slot.range->present; left != 0; left &= left - 1, ++block) {
            std::uint16_t used = 0;
            for (std::uint32_t word = 0; word < BLOCK_WORDS; ++word) {
                used = static_cast<std::uint16_t>(used | ((*block)[word] != 0 ? 1U << word : 0U));
            }
            out << slot.number * RANGE_BLOCKS + Lowest(left) << used;
            for (const std::uint64_t word : *block) {
                if (word != 0) {
                    out << word;
                }
            }
        }
    }
    return out;
}

bio_Ifilter& operator>>(bio_Ifilter& in, omi_BlkBitVect& bits)
{
    constexpr std::size_t MIN_BLOCK_BYTES = 4 + 2 + 8;
    omi_BlkBitVect read;
    std::int64_t previous = -1;
    for (std::uint32_t left = in.ReadCount(MIN_BLOCK_BYTES); left != 0; --left) {
        const std::uint64_t start = in.Offset();
        std::uint32_t number = 0;
        std::uint16_t used = 0;
        in >> number >> used;
        if (number <= previous || number >= BLOCK_NUMBERS || used == 0) {
            in.FailAt("a damaged block of bits", start);
        }
        previous = number;
        Block block{};
        for (std::uint32_t word = 0; word < BLOCK_WORDS; ++word) {
            if ((used >> word & 1) != 0) {
                in >> block[word];
                if (block[word] == 0) {
                    in.FailAt("a damaged block of bits", start);
                }
            }
        }
        auto& rep = read.Detach();
        rep.FindOrAddBlock(number * BLOCK_BITS) = block;
        rep.count += Population(block);
    }
    bits = std::move(read);
    return in;
}

pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omi_BlkBitVect& bits)
{
    const char* separator = "";
    omi_BlkBitVectTrav bit(bits);
    while (!bit.IsDone()) {
        const std::uint32_t first = bit.Current();
        std::uint32_t last = first;
        for (bit.Next(); !bit.IsDone() && bit.Current() == last + 1; bit.Next()) {
            ++last;
        }
        out << separator << first;
        if (last != first) {
            out << '-' << last;
        }
        separator = " ";
    }
    return out;
}

/// The representation for writing: made when there is none, cloned when it is shared.
omi_BlkBitVect::Rep& omi_BlkBitVect::Detach()
{
    if (m_rep == nullptr) {
        m_rep = new Rep;
    } else if (!m_rep->holders.IsUnique()) {
        cow_NoteClone<omi_BlkBitVect>();
        *this = omi_BlkBitVect(new Rep(*m_rep));
    }
    return *m_rep;
}

/// Replaces every word by `operation` of it and the other's word, which never sets a bit that was not set.
template <class Operation> void omi_BlkBitVect::Restrict(const omi_BlkBitVect& other, Operation operation)
{
    if (IsEmpty()) {
        return;
    }
    const omi_BlkBitVect theirs = other; // may be this one
    Rep& rep = Detach();
    rep.count = 0;
    for (Rep::Slot& slot : rep.slots) {
        Range& range = *slot.range;
        const Range* const theirRange = theirs.m_rep != nullptr ? theirs.m_rep->FindRange(slot.number) : nullptr;
        std::size_t from = 0;
        std::size_t kept = 0;
        for (std::uint64_t left = range.present; left != 0; left &= left - 1, ++from) {
            const Block* const theirBlock = theirRange != nullptr ? theirRange->Find(Lowest(left)) : nullptr;
            Block block = range.blocks[from];
            for (std::uint32_t word = 0; word < BLOCK_WORDS; ++word) {
                block[word] = operation(block[word], theirBlock != nullptr ? (*theirBlock)[word] : 0);
            }
            if (IsZero(block)) {
                range.present &= ~(left & -left);
            } else {
                rep.count += Population(block);
                range.blocks[kept++] = block;
            }
        }
        range.blocks.erase(range.blocks.begin() + static_cast<std::ptrdiff_t>(kept), range.blocks.end());
    }
    std::erase_if(rep.slots, [](const Rep::Slot& slot) { return slot.range->present == 0; });
    if (rep.count == 0) {
        Clear();
    }
}

/// The 64-bit word that holds the bit.
std::uint64_t omi_BlkBitVect::Word(std::uint32_t bit) const noexcept
{
    const Block* const block = m_rep != nullptr ? m_rep->FindBlock(bit) : nullptr;
    return block != nullptr ? (*block)[WordIndex(bit)] : 0;
}

void omi_BlkBitVectTrav::Next() noexcept
{
    if (m_done) {
        return;
    }
    if (m_above != 0) {
        m_current = (m_current & ~(WORD_BITS - 1)) + Lowest(m_above);
        m_above &= m_above - 1;
    } else {
        const std::uint32_t nextWord = (m_current | (WORD_BITS - 1)) + 1; // 0 behind the last word
        MoveTo(nextWord != 0 ? m_bits.NextSet(nextWord) : omi_BlkBitVect::NONE);
    }
}

void omi_BlkBitVectTrav::Previous() noexcept
{
    if (!m_done) {
        MoveTo(m_current != 0 ? m_bits.PreviousSet(m_current - 1) : omi_BlkBitVect::NONE);
    }
}

void omi_BlkBitVectTrav::MoveTo(std::int64_t bit) noexcept
{
    m_done = bit == omi_BlkBitVect::NONE;
    m_current = m_done ? 0 : static_cast<std::uint32_t>(bit);
    m_above = m_done ? 0 : m_bits.Word(m_current) & MaskFrom(m_current) & ~Mask(m_current);
}
