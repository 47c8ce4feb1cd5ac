#include "omu_BaseTable.h"
#include "omu_BaseVarray.h"
#include "omu_Table.h"
#include "omu_Varray.h"
#include "utl/StreamChecks.h"

namespace
{
using Table = omu_Table<unsigned int>;
using Varray = omu_Varray<unsigned int>;

struct Marked : Table
{
    using Table::Mark;
};

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

/// All that the table says of itself and of `key` must agree with the model.
void Check(const Table& table, const std::map<unsigned int, unsigned int>& model, unsigned int key)
{
    ASSERT_EQ(table.Length(), model.size());
    ASSERT_GT(table.Capacity(), table.Length());
    const auto place = model.lower_bound(key);
    const bool isKey = place != model.end() && place->first == key;
    unsigned int pos = 77;
    ASSERT_EQ(table.FindEntry(key, &pos), isKey) << key;
    ASSERT_EQ(pos, std::distance(model.begin(), place)) << key;
    unsigned int value = 77;
    ASSERT_EQ(table.Get(key, &value), isKey);
    ASSERT_EQ(value, isKey ? place->second : 77);
}

void CheckAll(const Table& table, const std::map<unsigned int, unsigned int>& model)
{
    unsigned int pos = 0;
    unsigned int key = 0;
    unsigned int value = 0;
    for (const auto& entry : model) {
        ASSERT_TRUE(table.GetEntry(pos++, key, value));
        ASSERT_EQ(std::pair(key, value), std::pair(entry.first, entry.second));
        Check(table, model, key);
    }
    ASSERT_FALSE(table.GetEntry(pos, key, value));
}

std::string Bytes(double growth, unsigned int capacity, unsigned int count, std::initializer_list<unsigned int> pairs)
{
    std::string bytes = BytesOf(16U) + BytesOf(growth) + BytesOf(capacity) + BytesOf(count);
    for (const unsigned int number : pairs) {
        bytes += BytesOf(number);
    }
    return bytes;
}
} // namespace

TEST(Table, Random_operations_agree_with_a_map)
{
    // Keys that fill up their range, stay sparse, lie at the upper end, or thin out again.
    const std::tuple<const char*, unsigned int, unsigned int, unsigned int> rows[] = {
        {"filling up", 1, 4000, 1},
        {"sparse", 1, 4294967295U, 3},
        {"at the end", 4294967295U - 3000, 3001, 3},
        {"thinning", 1, 100000, 5}};
    for (const auto& [name, first, range, removals] : rows) {
        SCOPED_TRACE(name);
        std::mt19937 random(4);
        Table table(3, 1.5);
        std::map<unsigned int, unsigned int> model;
        for (unsigned int step = 0; step < 6000; ++step) {
            const unsigned int value = step % 5 == 0 ? Marked::Mark() : step;
            const unsigned int key = first + static_cast<unsigned int>(random()) % range;
            const auto near = model.lower_bound(key);
            const unsigned int present = near != model.end() ? near->first : key;
            if (random() % 16 < (step > 4000 ? 2 * removals : removals)) {
                ASSERT_EQ(table.Remove(present), model.erase(present) == 1);
            } else if (step % 8 == 0) {
                ASSERT_EQ(table.Set(present, value), model.contains(present));
                if (model.contains(present)) {
                    model[present] = value;
                }
            } else if (step % 8 == 1) {
                table[key] += step;
                model[key] += step;
            } else {
                ASSERT_EQ(table.Add(key, value), model.emplace(key, value).second);
            }
            for (const unsigned int each : {key - 1, key, key + 1, present}) {
                Check(table, model, each != 0 ? each : 1);
            }
            if (step % 500 == 0) {
                CheckAll(table, model);
            }
        }
        Table read;
        ASSERT_EQ(ReadFrom(BytesOf(table), read), "");
        CheckAll(read, model);
        ASSERT_EQ(table.ClearAll(), !model.empty());
        CheckAll(table, {});
    }
}

TEST(Table, Sizes_and_limits_are_as_stated)
{
    Table table;
    EXPECT_FALSE(table.ClearAll());
    for (unsigned int key = 1; key <= 15; ++key) {
        EXPECT_TRUE(table.Add(key, key));
    }
    EXPECT_EQ(table.Capacity(), 16U);
    EXPECT_TRUE(table.Add(16, 16));
    EXPECT_EQ(table.Capacity(), 32U);
    EXPECT_FALSE(table.SetSize(32));
    EXPECT_FALSE(table.Add(16, 99));
    EXPECT_EQ(table[16], 16U);
    EXPECT_FALSE(table.Set(17, 1));
    EXPECT_TRUE(table.ClearAll());
    EXPECT_EQ(table.Capacity(), 16U);

    for (const auto& [size, growth] : {std::pair{0U, 2.0}, {1U, 1.0}, {1U, 0.5}, {1U, -2.0}, {1U, NOT_A_NUMBER}}) {
        Table full(size, growth);
        Varray fullArray(size, growth);
        EXPECT_FALSE(full.Add(1, 1)) << size << ' ' << growth;
        EXPECT_FALSE(fullArray.Add(1)) << size << ' ' << growth;
        full[1] = 5;
        fullArray[0] = 5;
        EXPECT_EQ(full.Length() + fullArray.Length(), 0U);
    }
    EXPECT_TRUE(Table(2, 1.0).Add(1, 1));
}

TEST(Table, Misuse_is_reported_and_harmless)
{
    RecordedAssertions assertions;
    Table table;
    unsigned int pos = 9;
    EXPECT_FALSE(table.FindEntry(0, &pos));
    EXPECT_EQ(pos, 0U);
    EXPECT_FALSE(table.Add(0, 1));
    EXPECT_EQ(std::as_const(table)[5], 0U);
    EXPECT_EQ(assertions.Take(), (Texts{"Invalid key (0) for table", "Invalid key (0) for table", "found"}));

    for (const unsigned int key : {1U, 3U, 5U, 9U}) {
        table.Add(key, key);
    }
    EXPECT_FALSE(table.InsertEntry(5, {1, 1}));
    EXPECT_TRUE(table.InsertEntry(2, {2, 2})); // 1 3 2 5: out of order from here on
    EXPECT_FALSE(table.FindEntry(4, &pos));
    EXPECT_EQ(pos, 3U);

    Varray array;
    EXPECT_EQ(array[0], 0U);
    EXPECT_EQ(array.Length(), 1U);
    array[2] = 7;
    EXPECT_EQ(std::as_const(array)[1], 0U);
    EXPECT_EQ(array.Length(), 1U);
    EXPECT_EQ(assertions.Take(), (Texts{"i<=length", "i<length"}));

    const omu_BaseTable::Entry entries[] = {{3, nullptr}, {5, nullptr}, {9, nullptr}};
    EXPECT_FALSE(omu_BaseTable::find_entry_opt(entries, 0, 3, &pos));
    EXPECT_EQ(assertions.Take(), Texts{"length > 0"});
    EXPECT_FALSE(omu_BaseTable::find_entry(entries, 1, 2, 3, &pos));
    EXPECT_FALSE(omu_BaseTable::find_entry_opt(entries, 3, 11, &pos));
    EXPECT_EQ(assertions.Take(), (Texts{"table[min].index_ <= index && (table[max].index_ >= index)",
                                        "table[0].index_ <= index && (table[length-1].index_ >= index)",
                                        "table[min].index_ <= index && (table[max].index_ >= index)"}));
    for (const auto& [key, found, place] :
         {std::tuple{3U, true, 0U}, {4U, false, 1U}, {5U, true, 1U}, {6U, false, 2U}, {9U, true, 2U}}) {
        EXPECT_EQ(omu_BaseTable::find_entry_opt(entries, 3, key, &pos), found) << key;
        EXPECT_EQ(pos, place) << key;
    }
}

TEST(Table, Entries_are_given_as_arrays_of_the_callers)
{
    omu_BaseTable table;
    int objects[2];
    unsigned int count = 7;
    unsigned int* keys = nullptr;
    void** values = nullptr;
    EXPECT_FALSE(table.getEntries(&count, &keys, &values));
    EXPECT_EQ(count, 0U);
    table.add(9, &objects[1]);
    table.add(5, &objects[0]);
    ASSERT_TRUE(table.getEntries(&count, &keys, &values));
    const std::unique_ptr<unsigned int[]> ownKeys(keys);
    const std::unique_ptr<void*[]> ownValues(values);
    EXPECT_EQ(std::vector(keys, keys + count), (std::vector{5U, 9U}));
    EXPECT_EQ(std::vector(values, values + count), (std::vector<void*>{&objects[0], &objects[1]}));
    Varray all;
    table.getKeys(&all);
    EXPECT_EQ(std::vector(all.ConstGetAll(), all.ConstGetAll() + all.Length()), (std::vector{5U, 9U}));
}

TEST(Varray, Random_operations_agree_with_a_vector)
{
    std::mt19937 random(5);
    Varray array(2, 1.5);
    std::vector<unsigned int> model;
    for (unsigned int step = 0; step < 4000; ++step) {
        const auto pos = static_cast<unsigned int>(random() % (model.size() + 2));
        const auto at = model.begin() + std::min<std::ptrdiff_t>(pos, std::ssize(model));
        const unsigned int value = step % 50;
        unsigned int removed = 99;
        if (const auto what = random() % 5; what == 0) {
            ASSERT_EQ(array.Remove(pos, &removed), at != model.end());
            ASSERT_EQ(removed, at != model.end() ? *at : 99);
            model.erase(at, at + (at != model.end()));
        } else if (what == 1) {
            ASSERT_EQ(array.Pop(), model.empty() ? 0 : model.back());
            model.resize(model.size() - !model.empty());
        } else {
            ASSERT_EQ(array.Insert(pos, value), pos <= model.size());
            model.insert(at, pos <= model.size() ? 1 : 0, value);
        }
        const std::unique_ptr<unsigned int[]> all(array.GetAll());
        ASSERT_EQ(std::vector(all.get(), all.get() + array.Length()), model);
        const auto first = std::find(model.begin(), model.end(), value);
        const auto last = std::find(model.rbegin(), model.rend(), value);
        ASSERT_EQ(array.FindFirst(value), first - model.begin());
        ASSERT_EQ(array.FindLast(value), last == model.rend() ? std::ssize(model) : model.rend() - last - 1);
    }
}

TEST(TableStream, Damage_is_refused_with_its_place)
{
    const std::string growth = "a growth factor that is not above 1 at offset 4";
    const std::string order = "table keys that do not ascend at offset ";
    const std::tuple<const char*, std::string, std::string> rows[] = {
        {"fine", Bytes(1.5, 4294967295U, 2, {1, 5, 4294967295U, 6}), ""},
        {"slow growth", Bytes(1.0000001, 0, 2, {1, 5, 2, 6}), ""},
        {"growth 1", Bytes(1, 16, 0, {}), growth},
        {"growth NaN", Bytes(NOT_A_NUMBER, 16, 0, {}), growth},
        {"growth infinite", Bytes(HUGE_VAL, 16, 0, {}), growth},
        {"count", Bytes(2, 16, 3, {1, 5, 2, 6}), "a count larger than the rest of the stream at offset 16"},
        {"key 0", Bytes(2, 16, 2, {0, 5, 2, 6}), order + "20"},
        {"key twice", Bytes(2, 16, 2, {2, 5, 2, 6}), order + "28"},
        {"descending", Bytes(2, 16, 2, {2, 5, 1, 6}), order + "28"}};
    for (const auto& [name, bytes, refusal] : rows) {
        Table table;
        table.Add(8, 80);
        EXPECT_EQ(ReadFrom(bytes, table), refusal) << name;
        EXPECT_EQ(table.Exists(8), !refusal.empty()) << name;
        EXPECT_LE(table.Capacity(), 16U) << name;
        for (std::size_t length = 0; length < bytes.size() && refusal.empty(); ++length) {
            EXPECT_NE(ReadFrom(bytes.substr(0, length), table), "") << name << " cut to " << length;
        }
    }
    Table table(20, 3);
    Varray array(20, 3);
    for (unsigned int i = 0; i < 500; ++i) {
        table[3 * i + 1] = array[i] = i;
    }
    Table sameTable(20, 3);
    Varray sameArray(20, 3);
    EXPECT_EQ(ReadFrom(BytesOf(table), sameTable), "");
    EXPECT_EQ(ReadFrom(BytesOf(array), sameArray), "");
    EXPECT_EQ(BytesOf(sameTable), BytesOf(table));
    EXPECT_EQ(BytesOf(sameArray), BytesOf(array));
    EXPECT_NE(ReadFrom(Bytes(2, 16, 1000000000, {}), array), "");
    EXPECT_EQ(array.Length(), 500U);

    ReadFrom(std::get<1>(rows[1]), table);
    EXPECT_EQ(DumpOf(table), "(omu_Table\n  1: 5\n  2: 6\n)");
    EXPECT_EQ(DumpOf(Varray()), "(omu_Varray\n)");
}
