#pragma once

#include "cow_COW.h"
#include "cow_CloneCount.h"
#include "cow_KeyProbe.h"
#include "cow_Sequence.h"
#include "cow_Stream.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <type_traits>
#include <utility>

/// Map ordered by key that copies share until one side writes. Keys need < (which must order all of them: no NaN);
/// text keys are looked for by anything that is seen as a std::string_view.
///
/// A small map is one sorted chunk. A larger one is a sequence of chunks under a directory of their greatest keys, so
/// that a write moves the entries of one chunk only, and after a copy clones that chunk only.
///
/// Ownership:  owns its entries; copies share them until one side writes. The empty map owns nothing.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: copy O(1); Find O(log n); Insert and Remove O(log n) and the entries of a chunk.
/// Errors:     std::bad_alloc, std::length_error, what copying an entry throws: the map is then as it was.
/// References: pointers and iterators die with the next write, the map's end or move.
/// Example:    for (const auto& [name, load] : loads) { Apply(name, load); }
/// Avoid for:  more than some 10 million entries; a split then moves too much of the directory.
template <class K, class V> class cow_Map
{
public:
    /// One entry; only constant ones are handed out.
    struct Entry
    {
        using cow_Relocatable = std::conditional_t<cow_BitwiseMovable<K> && cow_BitwiseMovable<V>, Entry, void>;

        K first;
        V second;

        friend bool operator==(const Entry& left, const Entry& right) = default;
    };
    class const_iterator;

    using cow_Relocatable = cow_Map;
    using key_type = K;
    using mapped_type = V;
    using value_type = Entry;
    using size_type = std::size_t;
    using iterator = const_iterator;
    using Probe = cow_KeyProbe<K>;

    int Length() const noexcept { return m_large ? m_large->length : m_small.Length(); }
    std::size_t size() const noexcept { return static_cast<std::size_t>(Length()); }
    bool IsEmpty() const noexcept { return Length() == 0; }
    bool empty() const noexcept { return IsEmpty(); }

    const_iterator begin() const noexcept { return {Chunks(), 0, 0}; }
    const_iterator end() const noexcept
    {
        const std::span<const Chunk> chunks = Chunks();
        return {chunks, chunks.size() - 1, chunks.back().Length()};
    }

    /// The value under the key, or null.
    const V* Find(const Probe& key) const
    {
        if (!m_large && key.IsCheaplyEqual()) {
            const auto isIt = [&key](const Entry& entry) { return key.Equals(entry.first); };
            const Entry* const found = std::find_if(m_small.begin(), m_small.end(), isIt);
            return found != m_small.end() ? &found->second : nullptr;
        }
        const Chunk& chunk = m_large ? m_large->chunks[LowerBound(m_large->bounds, key)] : m_small;
        const int index = LowerBound(chunk, key);
        return IsAt(chunk, index, key) ? &chunk[index].second : nullptr;
    }
    bool IsMember(const Probe& key) const { return Find(key) != nullptr; }

    /// The value under the key for writing, or null.
    V* Get(const Probe& key)
    {
        const Place place = PlaceOf(key);
        return place.found ? &WritableChunk(place.chunk).Get(place.index).second : nullptr;
    }

    /// Puts `value` under `key`, in place of the one that may be there; true when there was none.
    bool Insert(K key, V value)
    {
        const Place place = PlaceOf(key);
        if (place.found) {
            std::swap(WritableChunk(place.chunk).Get(place.index).second, value);
        } else {
            InsertAt(place, std::move(key), std::move(value));
        }
        return !place.found;
    }

    /// Removes the entry of the key; false when there is none.
    bool Remove(const Probe& key)
    {
        const Place place = PlaceOf(key);
        if (place.found) {
            RemoveAt(place);
        }
        return place.found;
    }

    void Clear()
    {
        m_large = cow_COW<Large>();
        m_small.Clear();
    }

    /// True when both hold the same entries in the same memory, or both hold none at all.
    bool SharesWith(const cow_Map& other) const noexcept
    {
        return m_small.SharesWith(other.m_small) && m_large.SharesWith(other.m_large);
    }

    friend bool operator==(const cow_Map& left, const cow_Map& right)
    {
        return left.Length() == right.Length() && std::equal(left.begin(), left.end(), right.begin());
    }

    friend bio_Ofilter& operator<<(bio_Ofilter& out, const cow_Map& map)
    {
        out << static_cast<std::uint32_t>(map.size());
        for (const auto& [key, value] : map) {
            out << key << value;
        }
        return out;
    }

    /// Keys that do not rise strictly are refused.
    friend bio_Ifilter& operator>>(bio_Ifilter& in, cow_Map& map)
    {
        map.Clear();
        for (auto left = in.ReadCount(cow_detail::minStreamBytes<K> + cow_detail::minStreamBytes<V>); left != 0;
             --left) {
            const std::uint64_t start = in.Offset();
            Entry entry{};
            in >> entry.first;
            if (!map.IsEmpty() && !(map.LastChunk().end()[-1].first < entry.first)) {
                in.FailAt("a map whose keys are not in order", start);
            }
            in >> entry.second;
            map.InsertAt(map.EndPlace(), std::move(entry.first), std::move(entry.second));
        }
        return in;
    }

    /// Values stand below their keys, one step further in.
    friend pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const cow_Map& map)
    {
        out.Open("cow_Map");
        for (const auto& [key, value] : map) {
            cow_detail::DumpItem(out, key);
            out.Indent();
            cow_detail::DumpItem(out, value);
            out.Outdent();
        }
        out.Close();
        return out;
    }

private:
    using Chunk = cow_Sequence<Entry>;
    struct Large
    {
        int length = 0;
        cow_Sequence<Chunk> chunks; // none of them is empty
        cow_Sequence<K> bounds;     // for each but the last chunk: its keys <= bound < the next chunk's keys
    };
    struct Place
    {
        int chunk;
        int index;
        bool found;
    };

    static constexpr int FIRST_ENTRIES = 4;
    static constexpr int MAX_ENTRIES = std::clamp<int>(4096 / sizeof(Entry), 8, 64);
    static constexpr int SPARSE_ENTRIES = MAX_ENTRIES / 4; // chunks as small as this join a neighbour

    static const K& KeyOf(const Entry& entry) noexcept { return entry.first; }
    static const K& KeyOf(const K& key) noexcept
        requires(!std::same_as<K, Entry>)
    {
        return key;
    }

    /// Position of the first item whose key is not below `key`.
    template <class Item> static int LowerBound(const cow_Sequence<Item>& items, const Probe& key)
    {
        if (!key.IsCheap()) {
            return LowerBoundByHalves(items, key);
        }
        // Three comparisons at once and no branches: where a key falls is a coin toss that no branch predictor wins.
        const auto isAbove = [&key](const Item& item) { return static_cast<std::ptrdiff_t>(key.IsAbove(KeyOf(item))); };
        const Item* first = items.data();
        std::ptrdiff_t count = items.Length();
        while (count > 3) {
            const std::ptrdiff_t quarter = count / 4;
            const Item* const one = first + quarter - 1;
            const Item* const two = one + quarter;
            const Item* const three = two + quarter;
            first += quarter * (isAbove(*one) + isAbove(*two) + isAbove(*three));
            count -= 3 * quarter; // keys known not to be below stay among them: only the length decides how often
        }
        std::ptrdiff_t below = 0;
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            below += isAbove(first[i]);
        }
        return static_cast<int>(first - items.data() + below);
    }

    template <class Item> static int LowerBoundByHalves(const cow_Sequence<Item>& items, const Probe& key)
    {
        const auto isBelow = [](const Item& item, const Probe& probe) { return probe.IsAbove(KeyOf(item)); };
        return static_cast<int>(std::lower_bound(items.begin(), items.end(), key, isBelow) - items.begin());
    }

    std::span<const Chunk> Chunks() const noexcept
    {
        return m_large ? std::span<const Chunk>(m_large->chunks) : std::span<const Chunk>(&m_small, 1);
    }
    const Chunk& LastChunk() const noexcept { return Chunks().back(); }
    Place EndPlace() const noexcept { return {static_cast<int>(Chunks().size()) - 1, LastChunk().Length(), false}; }

    /// Where the key is or belongs. Small maps are often filled with the same keys in the same order again and again,
    /// and there the branch predictor does know.
    Place PlaceOf(const Probe& key) const
    {
        if (!m_large) {
            const int index = LowerBoundByHalves(m_small, key);
            return {0, index, IsAt(m_small, index, key)};
        }
        const int chunk = LowerBound(m_large->bounds, key);
        const int index = LowerBound(m_large->chunks[chunk], key);
        return {chunk, index, IsAt(m_large->chunks[chunk], index, key)};
    }
    /// True when the entry at the lower bound of `key` is the key's own.
    static bool IsAt(const Chunk& chunk, int lowerBound, const Probe& key)
    {
        return lowerBound < chunk.Length() && !key.IsBelow(chunk[lowerBound].first);
    }

    Large& WritableLarge()
    {
        if (m_large.IsShared()) {
            cow_NoteClone<cow_Map>();
        }
        return *m_large.Get();
    }
    Chunk& WritableChunk(int chunk)
    {
        if (m_large) {
            return WritableLarge().chunks.Get(chunk);
        }
        if (m_small.IsShared()) {
            cow_NoteClone<cow_Map>();
        }
        return m_small;
    }

    void InsertAt(Place place, K&& key, V&& value)
    {
        Chunk* chunk = &WritableChunk(place.chunk);
        if (chunk->Length() == MAX_ENTRIES) {
            chunk = &Split(place);
        } else if (chunk->Length() == chunk->Capacity()) {
            chunk->Reserve(std::clamp(2 * chunk->Length(), FIRST_ENTRIES, MAX_ENTRIES));
        }
        chunk->Insert(place.index, Entry{Probe::Kept(std::move(key)), std::move(value)});
        if (m_large) {
            ++m_large.Get()->length;
        }
    }

    /// Splits the chunk of `place`, which is moved to where its entry belongs then; the result is the chunk there.
    Chunk& Split(Place& place)
    {
        if (!m_large) {
            BecomeLarge();
        }
        Large& large = WritableLarge();
        large.chunks.MakeRoom(1);
        large.bounds.MakeRoom(1);
        Chunk& lower = large.chunks.Get(place.chunk);
        // Entries that arrive in order fill the chunks: behind the very last one, the new chunk starts empty.
        const bool atEnd = place.index == lower.Length() && place.chunk == large.chunks.Length() - 1;
        const int cut = atEnd ? lower.Length() : lower.Length() / 2;
        K bound = lower[cut - 1].first;
        large.chunks.Insert(place.chunk + 1, lower.SplitOff(cut));
        large.bounds.Insert(place.chunk, std::move(bound));
        if (place.index >= cut) {
            place.index -= cut;
            ++place.chunk;
        }
        return large.chunks.Get(place.chunk);
    }

    void BecomeLarge()
    {
        cow_COW<Large> large = cow_COW<Large>::Make();
        large.Get()->chunks.MakeRoom(1);
        large.Get()->length = m_small.Length();
        large.Get()->chunks.Append(std::move(m_small));
        m_large = std::move(large);
    }

    void RemoveAt(Place place)
    {
        if (!m_large) {
            WritableChunk(0).RemoveAt(place.index);
            return;
        }
        Large& large = WritableLarge();
        large.bounds.Write();
        large.chunks.Write();
        if (large.chunks[place.chunk].Length() <= SPARSE_ENTRIES) {
            Join(large, place);
        }
        if (large.chunks[place.chunk].Length() == 1) {
            DropChunk(large, place.chunk, std::min(place.chunk, large.bounds.Length() - 1));
        } else {
            large.chunks.Get(place.chunk).RemoveAt(place.index);
        }
        --large.length;
        if (large.chunks.Length() == 1) {
            m_small = std::move(large.chunks.Get(0));
            m_large = cow_COW<Large>();
        }
    }

    /// Joins the chunk of `place` with a neighbour when both are far from filling one, and moves `place` along.
    static void Join(Large& large, Place& place)
    {
        const int lower = place.chunk + 1 < large.chunks.Length() ? place.chunk : place.chunk - 1;
        const int lowerLength = large.chunks[lower].Length();
        if (lowerLength + large.chunks[lower + 1].Length() > MAX_ENTRIES - SPARSE_ENTRIES) {
            return;
        }
        large.chunks.Get(lower).AppendAll(large.chunks[lower + 1]);
        DropChunk(large, lower + 1, lower);
        if (lower != place.chunk) {
            place.chunk = lower;
            place.index += lowerLength;
        }
    }

    static void DropChunk(Large& large, int chunk, int bound)
    {
        large.chunks.RemoveAt(chunk);
        large.bounds.RemoveAt(bound);
    }

    // Invariant: m_large holds two chunks or more, and m_small nothing; or m_large is null, and m_small has the entries.
    Chunk m_small;
    cow_COW<Large> m_large;
};

/// Walks the entries in key order; dies with the next write to the map, its end or its move.
template <class K, class V> class cow_Map<K, V>::const_iterator
{
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = Entry;
    using difference_type = std::ptrdiff_t;
    using pointer = const Entry*;
    using reference = const Entry&;

    const_iterator() noexcept = default;

    const Entry& operator*() const noexcept { return *m_at; }
    const Entry* operator->() const noexcept { return m_at; }
    const_iterator& operator++() noexcept
    {
        if (++m_at == m_chunkEnd && m_chunk != m_lastChunk) {
            Enter(m_chunk + 1, 0);
        }
        return *this;
    }
    const_iterator operator++(int) noexcept
    {
        const const_iterator before = *this;
        ++*this;
        return before;
    }
    const_iterator& operator--() noexcept
    {
        if (m_at == m_chunk->begin()) {
            Enter(m_chunk - 1, m_chunk[-1].Length());
        }
        --m_at;
        return *this;
    }
    const_iterator operator--(int) noexcept
    {
        const const_iterator before = *this;
        --*this;
        return before;
    }
    friend bool operator==(const const_iterator& left, const const_iterator& right) noexcept
    {
        return left.m_at == right.m_at;
    }

private:
    friend cow_Map;
    const_iterator(std::span<const Chunk> chunks, std::size_t chunk, int index) noexcept : m_lastChunk(&chunks.back())
    {
        Enter(&chunks[chunk], index);
    }
    void Enter(const Chunk* chunk, int index) noexcept
    {
        m_chunk = chunk;
        m_at = chunk->begin() + index;
        m_chunkEnd = chunk->end();
    }

    // Invariant: at the end of a chunk only when it is the last one.
    const Entry* m_at = nullptr;
    const Entry* m_chunkEnd = nullptr;
    const Chunk* m_chunk = nullptr;
    const Chunk* m_lastChunk = nullptr;
};
