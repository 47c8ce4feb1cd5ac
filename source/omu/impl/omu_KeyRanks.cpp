#include "omu_KeyRanks.h"

#include <algorithm>
#include <new>

void omu_KeyRanks::SwitchOff() noexcept
{
    m_blocks.clear();
    m_count = 0;
}

bool omu_KeyRanks::Cover(std::uint32_t key, std::size_t length) noexcept
{
    const std::uint32_t base = key - key % BLOCK_KEYS;
    const std::uint32_t first = IsOn() ? std::min(m_base, base) : base;
    const std::uint32_t end = m_base + static_cast<std::uint32_t>(m_blocks.size()) * BLOCK_KEYS; // 0: past the last
    const std::uint32_t last = IsOn() ? std::max(end - BLOCK_KEYS, base) : base;
    const std::size_t blocks = (last - first) / BLOCK_KEYS + std::size_t{1};
    constexpr std::size_t ALWAYS_ALLOWED = 8;
    if (blocks > length / KEYS_FOR_BLOCK + ALWAYS_ALLOWED) {
        SwitchOff();
        return false;
    }
    try {
        m_blocks.insert(m_blocks.begin(), IsOn() ? (m_base - first) / BLOCK_KEYS : 0, Block{0, 0});
        m_blocks.resize(blocks, Block{0, m_count});
    } catch (const std::bad_alloc&) {
        SwitchOff();
        return false;
    }
    m_base = first;
    return true;
}

void omu_KeyRanks::Insert(std::uint32_t key, std::size_t length) noexcept
{
    const std::size_t index = (key - m_base) / BLOCK_KEYS;
    const bool isCovered = key >= m_base && index < m_blocks.size();
    if (!isCovered && !Cover(key, length)) {
        return;
    }
    const std::size_t place = (key - m_base) / BLOCK_KEYS;
    m_blocks[place].keys |= BitOf(key);
    ++m_count;
    for (std::size_t i = place + 1; i < m_blocks.size(); ++i) {
        ++m_blocks[i].before;
    }
}

void omu_KeyRanks::Remove(std::uint32_t key, std::size_t length) noexcept
{
    if (!IsOn()) {
        return;
    }
    const std::size_t place = (key - m_base) / BLOCK_KEYS;
    m_blocks[place].keys &= ~BitOf(key);
    --m_count;
    for (std::size_t i = place + 1; i < m_blocks.size(); ++i) {
        --m_blocks[i].before;
    }
    if (m_blocks.size() > length / (KEYS_FOR_BLOCK / 2) + 16) {
        SwitchOff();
    }
}
