#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace omi_detail
{
/// How many bits are set in each byte. A look-up waits for the bits; what computes this from them takes longer, and not
/// every processor has an instruction for it.
inline constexpr auto BIT_COUNTS = [] {
    std::array<std::uint8_t, 256> counts{};
    for (std::size_t byte = 0; byte < counts.size(); ++byte) {
        counts[byte] = static_cast<std::uint8_t>(std::popcount(byte));
    }
    return counts;
}();
} // namespace omi_detail

/// The occupied cells among 1024, when they are few: their values side by side in order, behind a bit for each cell.
/// Takes an eighth of the memory of all cells when one in sixteen is occupied.
///
/// Ownership:  owns its values; a copy is deep.
/// Threads:    one thread at a time; any number may read while none writes.
/// Complexity: Find O(1); Insert O(values behind).
/// Errors:     Insert and copying throw std::bad_alloc; the chunk is then as it was.
/// References: what Find gives dies with the next Insert.
/// Avoid for:  more than MOST cells; an array of all cells is then nearly as small and needs no bits counted.
template <class T> class omi_PackedChunk
{
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= 16);

public:
    static constexpr unsigned int BITS = 10; ///< of the index of a cell
    static constexpr unsigned int MOST = 128;

    /// Where all is, for look-ups that know it; it changes with Insert.
    struct Place
    {
        // Of each 8 cells: a bit for each, and behind these the number of occupied cells before them. The values follow.
        std::uint16_t groups[128];

        const T* Values() const noexcept { return reinterpret_cast<const T*>(this + 1); }
        /// The value of the cell, or null when it is not occupied.
        const T* Find(unsigned int cell) const noexcept
        {
            const unsigned int group = groups[cell / 8];
            const unsigned int upTo = group << (7 - cell % 8) & 0xFF; // the cell's own bit on top
            return upTo >= 0x80 ? Values() + (group >> 8) + omi_detail::BIT_COUNTS[upTo] - 1 : nullptr;
        }
        unsigned int Count() const noexcept { return (groups[127] >> 8) + omi_detail::BIT_COUNTS[groups[127] & 0xFF]; }
        /// The bits of 64 cells, of which `cell` is the first.
        std::uint64_t Bits(unsigned int cell) const noexcept
        {
            std::uint64_t bits = 0;
#pragma GCC unroll 8
            for (unsigned int g = 0; g < 8; ++g) {
                bits |= std::uint64_t{groups[cell / 8 + g] & 0xFFU} << 8 * g;
            }
            return bits;
        }
        /// The value of the first occupied cell at or behind `cell`, the first of a group.
        const T* ValuesFrom(unsigned int cell) const noexcept { return Values() + (groups[cell / 8] >> 8); }
    };
    static_assert(sizeof(Place) % 16 == 0);

    omi_PackedChunk() = default;
    omi_PackedChunk(const omi_PackedChunk& other)
    {
        if (other.m_place != nullptr) {
            const unsigned int count = other.m_place->Count();
            Reserve(count);
            std::memcpy(m_place, other.m_place, sizeof(Place) + count * sizeof(T));
        }
    }
    omi_PackedChunk(omi_PackedChunk&& other) noexcept : m_place(std::exchange(other.m_place, nullptr)) {}
    omi_PackedChunk& operator=(omi_PackedChunk other) noexcept
    {
        std::swap(m_place, other.m_place);
        return *this;
    }
    ~omi_PackedChunk() { std::free(m_place); }

    /// Null when no cell was ever occupied.
    const Place* Get() const noexcept { return m_place; }
    unsigned int Count() const noexcept { return m_place != nullptr ? m_place->Count() : 0; }

    /// Occupies a cell that is not occupied, while there are fewer than MOST.
    void Insert(unsigned int cell, T value)
    {
        const unsigned int count = Count();
        if (count % STEP == 0) {
            Reserve(count + STEP);
        }
        Occupy(cell);
        T* const inserted = const_cast<T*>(m_place->Find(cell));
        std::copy_backward(inserted, Values() + count, Values() + count + 1);
        *inserted = value;
    }

private:
    static constexpr unsigned int STEP = 16; // values by which the room grows

    void Occupy(unsigned int cell) noexcept
    {
        m_place->groups[cell / 8] |= static_cast<std::uint16_t>(1U << cell % 8);
        // All groups, in their own type, which the compiler makes a few wide instructions of.
        const auto group = static_cast<std::uint16_t>(cell / 8);
        for (std::uint16_t g = 0; g < std::size(m_place->groups); ++g) {
            const std::uint16_t behind = g > group ? 256 : 0;
            m_place->groups[g] = static_cast<std::uint16_t>(m_place->groups[g] + behind);
        }
    }
    T* Values() noexcept { return const_cast<T*>(m_place->Values()); }
    void Reserve(unsigned int count)
    {
        void* const place = std::realloc(m_place, sizeof(Place) + (count + STEP - 1) / STEP * STEP * sizeof(T));
        if (place == nullptr) {
            throw std::bad_alloc();
        }
        if (m_place == nullptr) {
            std::memset(place, 0, sizeof(Place));
        }
        m_place = static_cast<Place*>(place);
    }

    Place* m_place = nullptr; // room for a multiple of STEP values
};
