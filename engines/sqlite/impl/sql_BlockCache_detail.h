#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

/// Blocks of stored arrays, as they were read and checked: those used last, up to a number of bytes. An array holds one
/// block; this spares one that is read here and there the way to the file, and holds the next few blocks for one that is
/// read in order.
///
/// Ownership:  owns copies of the blocks.
/// Threads:    one thread at a time.
/// Complexity: Find and Erase O(1), Put the copy of a block.
/// Errors:     Put: std::bad_alloc; the block is then not kept.
/// References: what Find gives dies with the next call that is no Find.
/// Avoid for:  blocks that an array read from one end to the other leaves behind: each would push out one that is needed
///             again.
class sql_BlockCache
{
public:
    enum class Use
    {
        AGAIN,
        ONCE ///< read ahead: who finds it erases it
    };
    struct Block
    {
        std::string bytes;
        Use use;
    };

    explicit sql_BlockCache(std::size_t bytes) noexcept : m_limit(bytes) {}

    /// Keeps no more bytes than that from now on; none at 0.
    void SetLimit(std::size_t bytes);
    std::size_t Limit() const noexcept { return m_limit; }
    /// The block as it was at that revision of its record; null when it is not kept.
    const Block* Find(std::int64_t record, std::int64_t block, std::int64_t revision);
    void Put(std::int64_t record, std::int64_t block, std::int64_t revision, std::string_view bytes, Use use);
    void Erase(std::int64_t record, std::int64_t block);
    void Clear() noexcept;

private:
    struct Place
    {
        std::int64_t record;
        std::int64_t block;
        bool operator==(const Place&) const = default;
    };
    struct Hash
    {
        std::size_t operator()(const Place& place) const noexcept
        {
            return std::hash<std::int64_t>()(place.record * 0x9E3779B9 + place.block);
        }
    };
    struct Entry
    {
        Place place;
        std::int64_t revision;
        Block block;

        std::size_t Size() const noexcept { return sizeof(Entry) + block.bytes.size(); }
    };
    using Entries = std::list<Entry>;

    void Drop(Entries::iterator entry) noexcept;
    void MakeRoom(std::size_t bytes) noexcept;

    std::size_t m_limit;
    std::size_t m_size = 0;
    Entries m_entries; // the one used last comes first
    std::unordered_map<Place, Entries::iterator, Hash> m_places;
};
