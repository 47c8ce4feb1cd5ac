#include "sql_BlockCache_detail.h"

void sql_BlockCache::SetLimit(std::size_t bytes)
{
    m_limit = bytes;
    MakeRoom(0);
}

auto sql_BlockCache::Find(std::int64_t record, std::int64_t block, std::int64_t revision) -> const Block*
{
    const auto found = m_places.find({record, block});
    if (found == m_places.end() || found->second->revision != revision) {
        return nullptr;
    }
    m_entries.splice(m_entries.begin(), m_entries, found->second);
    return &found->second->block;
}

void sql_BlockCache::Put(std::int64_t record, std::int64_t block, std::int64_t revision, std::string_view bytes,
                         Use use)
{
    Erase(record, block);
    if (sizeof(Entry) + bytes.size() > m_limit) {
        return;
    }
    MakeRoom(sizeof(Entry) + bytes.size());
    m_entries.push_front({{record, block}, revision, {std::string(bytes), use}});
    try {
        m_places.emplace(m_entries.front().place, m_entries.begin());
    } catch (...) {
        m_entries.pop_front();
        throw;
    }
    m_size += m_entries.front().Size();
}

void sql_BlockCache::Erase(std::int64_t record, std::int64_t block)
{
    if (const auto found = m_places.find({record, block}); found != m_places.end()) {
        Drop(found->second);
    }
}

void sql_BlockCache::Clear() noexcept
{
    m_places.clear();
    m_entries.clear();
    m_size = 0;
}

void sql_BlockCache::Drop(Entries::iterator entry) noexcept
{
    m_size -= entry->Size();
    m_places.erase(entry->place);
    m_entries.erase(entry);
}

/// Drops what was not used for longest until that many bytes more are within the limit.
void sql_BlockCache::MakeRoom(std::size_t bytes) noexcept
{
    while (!m_entries.empty() && m_size + bytes > m_limit) {
        Drop(std::prev(m_entries.end()));
    }
}
