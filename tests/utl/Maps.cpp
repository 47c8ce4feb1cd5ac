#include "Counted.h"
#include "cow_Map.h"

namespace
{
using MapsOfCounted = CountedTest;
using Random = std::mt19937;

/// Large, so that a chunk holds few and a handful of keys makes a directory.
struct Big
{
    int value = 0;
    char filler[600] = {};

    Big(int number) : value(number) {}
    friend bool operator==(const Big& left, const Big& right) { return left.value == right.value; }
};

/// For text keys short and long ones, with common beginnings, zero bytes and bytes at the end of the order.
template <class K> K MakeKey(int number)
{
    if constexpr (std::same_as<K, cow_String>) {
        const std::string_view beginnings[] = {"", "key", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "a beginning of 15"};
        std::string key(beginnings[number % 4]);
        key += static_cast<char>(number / 4);
        return cow_String(key.append(static_cast<std::size_t>(number % 3), '\0'));
    } else {
        return K(number - 100);
    }
}

template <class Map, class Model> void ExpectSame(const Map& map, const Model& model)
{
    const auto isSame = [](const auto& entry, const auto& other) {
        return entry.first == other.first && entry.second == other.second;
    };
    EXPECT_EQ(map.size(), model.size());
    EXPECT_TRUE(std::equal(map.begin(), map.end(), model.begin(), model.end(), isSame));
    EXPECT_TRUE(std::equal(std::make_reverse_iterator(map.end()), std::make_reverse_iterator(map.begin()),
                           model.rbegin(), model.rend(), isSame));
}

/// Random changes of maps that share, growing and shrinking in turns, beside std::map.
template <class K, class V> void RunBesideStdMap(unsigned seed, unsigned keyCount)
{
    int step = 0;
    const auto change = [&](Random& random, cow_Map<K, V>& map, std::map<K, V>& model, const auto&, const auto&) {
        ++step;
        // Anywhere, or rising or falling for a while.
        const int stretch = step / 1000 % 3;
        const int at = step % static_cast<int>(keyCount);
        const int any = static_cast<int>(random() % keyCount);
        const K key = MakeKey<K>(stretch == 0 ? any : stretch == 1 ? at : static_cast<int>(keyCount) - 1 - at);
        const V value(step);
        const bool isGrowing = step / 1500 % 2 == 0;
        if (V* const there = random() % 4 == 0 ? map.Get(key) : nullptr) {
            *there = value;
            model.at(key) = value;
        } else if (random() % 4 != 0 ? isGrowing : !isGrowing) {
            EXPECT_EQ(map.Insert(key, value), model.insert_or_assign(key, value).second);
        } else if (random() % 4 != 0) {
            EXPECT_EQ(map.Remove(key), model.erase(key) == 1);
        } else if (!map.IsEmpty()) {
            EXPECT_TRUE(map.Remove(map.begin()->first)); // a key of the map itself
            model.erase(model.begin());
        }
        const V* const found = map.Find(key);
        const auto expected = model.find(key);
        EXPECT_TRUE(expected != model.end() ? found != nullptr && *found == expected->second : found == nullptr);
    };
    const auto check = [&step](const auto& map, const auto& model) {
        if (step % 8 == 0) {
            ExpectSame(map, model);
        }
    };
    RunBesideModels<cow_Map<K, V>, std::map<K, V>>(seed, 12000, change, check);
}

cow_Map<int, Counted> CountedMap(int length)
{
    cow_Map<int, Counted> map;
    for (int i = 0; i < length; ++i) {
        map.Insert(2 * i, i);
    }
    return map;
}

} // namespace

TEST_F(MapsOfCounted, Random_changes_and_copies_agree_with_std_map)
{
    RecordedAssertions assertions;
    RunBesideStdMap<int, int>(1, 12);
    RunBesideStdMap<int, int>(2, 1000);
    RunBesideStdMap<int, Big>(3, 200);
    RunBesideStdMap<cow_String, Counted>(4, 800);
    RunBesideStdMap<Counted, cow_String>(5, 300);
    EXPECT_EQ(assertions.Take(), Texts());
}

TEST_F(MapsOfCounted, A_failing_copy_changes_nothing_and_loses_nothing)
{
    for (const int length : {3, 64, 200}) {
        SCOPED_TRACE(length);
        using Map = cow_Map<int, Counted>;
        const Map start = CountedMap(length);
        const Counted value = 7;
        ExpectAllOrNothing(start, [&](Map& map) { map.Insert(3, value); });
        ExpectAllOrNothing(start, [&](Map& map) { map.Insert(1000, value); });
        ExpectAllOrNothing(start, [&](Map& map) { map.Insert(2, value); });
        ExpectAllOrNothing(start, [&](Map& map) { map.Get(4); });
        ExpectAllOrNothing(start, [&](Map& map) { map.Remove(2); });
    }

    cow_Map<Counted, int> keys; // the last chunk holds one entry, and goes with it
    for (int i = 0; i < 65; ++i) {
        keys.Insert(i, i);
    }
    const Counted last = 64;
    ExpectAllOrNothing(keys, [&](cow_Map<Counted, int>& map) { map.Remove(last); });
}

TEST_F(MapsOfCounted, Reading_never_clones_and_a_write_clones_one_chunk_at_most)
{
    const cow_Map<int, Counted> source = CountedMap(1000);
    const cow_Map<int, Counted> small = CountedMap(8);
    Counted::copies = 0;
    const Clones<cow_Map<int, Counted>> clones;
    cow_Map<int, Counted> copy(source);
    cow_Map<int, Counted> smallCopy(small);
    EXPECT_TRUE(copy == source && copy.Get(501) == nullptr && !copy.Remove(501));
    EXPECT_TRUE(copy.SharesWith(source));
    EXPECT_EQ(Counted::copies, 0);
    *copy.Get(500) = 1;
    *copy.Get(500) = 2;
    EXPECT_EQ(copy.Find(1500), source.Find(1500));
    EXPECT_LE(Counted::copies, 64);
    Counted::copies = 0;
    smallCopy.Insert(1, 1);
    smallCopy.Insert(3, 1);
    EXPECT_EQ(Counted::copies, 8);
    EXPECT_TRUE(clones.Are(2));
}

TEST(Maps, Texts_are_found_by_all_that_is_seen_as_text)
{
    cow_Map<cow_String, int> map;
    const char* const keys[] = {"short", "a key that is too long to live in the object",
                                "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"};
    for (const char* const key : keys) {
        map.Insert(key, map.Length());
        EXPECT_EQ(*map.Find(key), map.Length() - 1);
        EXPECT_EQ(map.Find(std::string(key)), map.Find(std::string_view(key)));
    }
    EXPECT_EQ(map.Find(std::string_view("short\0", 6)), nullptr);
    EXPECT_EQ(map.Find("a key that is too long to live in the objecu"), nullptr);

    cow_String kept("short12345678901234567890");
    kept.TrimRight("0123456789");
    EXPECT_EQ(kept, "short");
    EXPECT_TRUE(map.IsMember(kept));
    map.Clear();
    map.Insert(kept, 4);
    EXPECT_TRUE(map.IsMember("short"));
}

TEST(Maps, Streams_and_dumps_keep_all_and_damage_is_refused)
{
    cow_Map<cow_String, cow_Map<int, bool>> map;
    map.Insert("b", {});
    map.Insert("a", {});
    map.Get("a")->Insert(-1, true);
    map.Get("a")->Insert(1, false);
    ExpectStreamed(map);
    EXPECT_EQ(BytesOf(*map.Find("a")), std::string("\2\0\0\0\xFF\xFF\xFF\xFF\1\1\0\0\0\0", 14));

    cow_Map<int, int> large;
    for (int i = 0; i < 300; ++i) {
        large.Insert(i, i);
    }
    cow_Map<int, int> read;
    EXPECT_EQ(ReadFrom(BytesOf(large), read), "");
    EXPECT_EQ(read, large);

    cow_Map<unsigned char, bool> damaged;
    EXPECT_EQ(ReadFrom(std::string("\2\0\0\0\5\1\5\0", 8), damaged), "a map whose keys are not in order at offset 6");
    EXPECT_EQ(ReadFrom(std::string("\2\0\0\0\5\1\4\0", 8), damaged), "a map whose keys are not in order at offset 6");
    EXPECT_EQ(ReadFrom(std::string("\3\0\0\0\5\1\6\0", 8), damaged),
              "a count larger than the rest of the stream at offset 0");

    EXPECT_EQ(DumpOf(map), "(cow_Map\n  a\n    (cow_Map\n      -1\n        true\n      1\n        false\n    )\n"
                           "  b\n    (cow_Map\n    )\n)");
}
