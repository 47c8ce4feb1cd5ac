#pragma once

#include "VEXutl_export.h"

#include <cstdint>
#include <utility>

class bio_Ifilter;
class bio_Ofilter;
class pnt_PrettyPrint;

/// Set of bit numbers 0 to 4294967295, held as blocks of 1024 bits of which only those with a set bit exist:
/// bit 2147483647 alone costs one block.
///
/// Ownership:  copies share the blocks until one side writes.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: a bit is found in O(log n) of the ranges of 65536 bits in use, a fresh block added in O(n)
/// cheap steps;
///             setting bits in ascending order is amortised O(1). Count O(1); copy O(1); And, Or, AndNot, ==
///             O(blocks).
/// Errors:     std::bad_alloc; Or may then have added some of the bits.
/// Example:    for (omi_BlkBitVectTrav bit(set); !bit.IsDone(); bit.Next()) { use(bit.Current()); }
class VEXUTL_API omi_BlkBitVect
{
public:
    /// What NextSet and PreviousSet say when there is no such bit.
    static constexpr std::int64_t NONE = -1;

    omi_BlkBitVect() noexcept = default;
    omi_BlkBitVect(const omi_BlkBitVect& other) noexcept;
    omi_BlkBitVect(omi_BlkBitVect&& other) noexcept : m_rep(std::exchange(other.m_rep, nullptr)) {}
    omi_BlkBitVect& operator=(omi_BlkBitVect other) noexcept
    {
        std::swap(m_rep, other.m_rep);
        return *this;
    }
    ~omi_BlkBitVect();

    bool IsSet(std::uint32_t bit) const noexcept;
    bool IsEmpty() const noexcept { return Count() == 0; }
    /// How many bits are set.
    std::uint64_t Count() const noexcept;
    /// The first set bit at or after `from`, or NONE.
    std::int64_t NextSet(std::uint32_t from) const noexcept;
    /// The last set bit at or before `from`, or NONE.
    std::int64_t PreviousSet(std::uint32_t from) const noexcept;

    /// Sets the bit; true when it was not set. Setting a set bit never clones.
    bool Set(std::uint32_t bit);
    /// Unsets the bit; true when it was set. Unsetting an unset bit never clones.
    bool Unset(std::uint32_t bit);
    /// Unsets all bits.
    void Clear() noexcept { *this = omi_BlkBitVect(); }

    /// Keeps the bits that `other` has too.
    void And(const omi_BlkBitVect& other);
    /// Adds the bits of `other`.
    void Or(const omi_BlkBitVect& other);
    /// Removes the bits of `other`.
    void AndNot(const omi_BlkBitVect& other);

    bool SharesWith(const omi_BlkBitVect& other) const noexcept { return m_rep == other.m_rep; }

    friend VEXUTL_API bool operator==(const omi_BlkBitVect& left, const omi_BlkBitVect& right) noexcept;

    /// 32-bit count of blocks; of each block in ascending order its 32-bit number (bit / 1024), 16 bits that
    /// tell which of its sixteen 64-bit words are not zero, and those words. Any other order and any empty
    /// block are refused.
    friend VEXUTL_API bio_Ofilter& operator<<(bio_Ofilter& out, const omi_BlkBitVect& bits);
    friend VEXUTL_API bio_Ifilter& operator>>(bio_Ifilter& in, omi_BlkBitVect& bits);
    /// The bits as runs: "3 7-12 40".
    friend VEXUTL_API pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omi_BlkBitVect& bits);

private:
    friend class omi_BlkBitVectTrav;
    struct Rep;

    explicit omi_BlkBitVect(Rep* rep) noexcept : m_rep(rep) {}
    Rep& Detach();
    template <class Operation> void Restrict(const omi_BlkBitVect& other, Operation operation);
    std::uint64_t Word(std::uint32_t bit) const noexcept;

    Rep* m_rep = nullptr; // owned share; null while no bit was ever set
};

/// Walks over the set bits, upwards or downwards. It walks over the bits as they were when it was made: the
/// vector may change meanwhile (and clones its blocks once if it does).
///
/// Threads:    one thread at a time.
/// Complexity: Next a few instructions within 64 bits, else as NextSet.
/// Errors:     none. Past the end it stays done until First, Last or From; Current() is then 0.
class VEXUTL_API omi_BlkBitVectTrav
{
public:
    /// Stands at the first set bit.
    explicit omi_BlkBitVectTrav(const omi_BlkBitVect& bits) noexcept : m_bits(bits) { First(); }

    void First() noexcept { From(0); }
    void Last() noexcept { MoveTo(m_bits.PreviousSet(UINT32_MAX)); }
    /// To the first set bit at or after `bit`.
    void From(std::uint32_t bit) noexcept { MoveTo(m_bits.NextSet(bit)); }

    bool IsDone() const noexcept { return m_done; }
    std::uint32_t Current() const noexcept { return m_current; }
    void Next() noexcept;
    void Previous() noexcept;

private:
    void MoveTo(std::int64_t bit) noexcept;

    omi_BlkBitVect m_bits;
    std::uint64_t m_above = 0; // set bits above the current one in its 64-bit word
    std::uint32_t m_current = 0;
    bool m_done = true;
};
