#include "omu_KeyRanks.h"

#include <algorithm>
#include <new>

bool omu_KeyRanks::StartBlock(std::uint32_t key, std::size_t length) noexcept
{
    const auto behind = static_cast<std::uint64_t>(key - m_lastCovered - 1);
    if (!IsOn() || behind >= BLOCK_KEYS || m_leftOut.size() > MostBlocks(length) ||
        m_leftOut.size() == m_leftOut.capacity()) {
        return false;
    }
    m_leftOut.push_back(m_leftOut.back() + BLOCK_KEYS); // has room: cannot throw
    m_lastCovered += BLOCK_KEYS;
    return true;
}

bool omu_KeyRanks::Cover(std::uint32_t key, std::size_t length) noexcept
{
    if (!IsOn()) {
        m_base = key;
    }
    const std::size_t front = key < m_base ? static_cast<std::size_t>((m_base - key - 1) / BLOCK_KEYS + 1) : 0;
    const std::size_t present = std::max<std::size_t>(m_leftOut.size(), 1) - 1;
    const std::size_t blocks = std::max(front + present, front != 0 ? 0 : BlockOf(key) + 1);
    if (blocks > MostBlocks(length)) {
        SwitchOff();
        return false;
    }
    try {
        if (!IsOn()) {
            m_leftOut.push_back(0);
        }
        if (front != 0) {
            m_leftOut.insert(m_leftOut.begin(), front, 0);
            for (std::size_t i = 0; i < m_leftOut.size(); ++i) {
                m_leftOut[i] += static_cast<std::uint32_t>(std::min(i, front) * BLOCK_KEYS);
            }
        }
        while (m_leftOut.size() <= blocks) {
            m_leftOut.push_back(m_leftOut.back() + BLOCK_KEYS);
        }
    } catch (const std::bad_alloc&) {
        SwitchOff();
        return false;
    }
    m_base -= static_cast<std::int64_t>(front * BLOCK_KEYS);
    m_lastCovered = m_base + static_cast<std::int64_t>(blocks * BLOCK_KEYS) - 1;
    return true;
}

void omu_KeyRanks::Insert(std::uint32_t key, std::size_t length) noexcept
{
    const bool isCovered = key >= m_base && key <= m_lastCovered;
    if (!isCovered && !Cover(key, length)) {
        return;
    }
    for (std::size_t i = BlockOf(key) + 1; i < m_leftOut.size(); ++i) {
        --m_leftOut[i];
    }
}

void omu_KeyRanks::Remove(std::uint32_t key, std::size_t length) noexcept
{
    if (!IsOn()) {
        return;
    }
    for (std::size_t i = BlockOf(key) + 1; i < m_leftOut.size(); ++i) {
        ++m_leftOut[i];
    }
    if (m_leftOut.size() > length / (KEYS_FOR_BLOCK / 2) + 16) {
        SwitchOff();
    }
}
