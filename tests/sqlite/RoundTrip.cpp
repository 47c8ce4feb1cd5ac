#include "StoreTest.h"
#include "cls_ArrayPrim.h"
#include "cls_ObjectAgents.h"
#include "cls_xp1DArrayList.h"
#include "cow_2DArray.h"

namespace
{
using Field = cls_FieldHandle;
using Strings = cow_1DArray<cow_String>;

const cow_String ODD_TEXT("a\0b\xFF", 4);
constexpr double NOTHING = std::numeric_limits<double>::quiet_NaN();
constexpr int LEAST = std::numeric_limits<int>::min();
constexpr std::uint32_t MOST = std::numeric_limits<std::uint32_t>::max();

/// A list of (name in the operations, type, three values at the edges of the type).
#define KEYED(X)                                                                                                       \
    X(Double, double, -0.0, 1e-310, std::numeric_limits<double>::infinity())                                           \
    X(Float, float, -1.5f, std::numeric_limits<float>::denorm_min(), 3e38f)                                            \
    X(Int, int, LEAST, 0, 7)                                                                                           \
    X(String, cow_String, "", ODD_TEXT, "\xC3\xA4 text")                                                               \
    X(Unsigned, std::uint32_t, 0U, 1U, MOST)
#define KINDS(X) X(Bool, bool, true, false, true) KEYED(X)

TEST_F(StoreTest, Every_kind_of_field_comes_back)
{
    {
        sql_Store store = Create();
        Save(store, [](const cls_WriteVisitor& visitor) {
            cls_MementoWrite& record = *visitor.Memento();
#define WRITE(N, T, A, B, C)                                                                                           \
    record.Write##N(Field(#N), B);                                                                                     \
    record.Write##N##Array(Field(#N "s"), cow_1DArray<T>{A, B, C});                                                    \
    record.Write##N##Array(Field("no" #N "s"), {});                                                                    \
    cow_2DArray<T> matrix##N(3, 2);                                                                                    \
    matrix##N.Set(2, 0, C);                                                                                            \
    record.Write##N##Matrix(Field(#N "Matrix"), matrix##N);
            KINDS(WRITE)
#undef WRITE
            record.WriteDouble(Field("nan"), NOTHING);
            record.WriteDouble(Field("zero"), -0.0);
        });
        store.Commit();
    }
    Travel("fields.vx");
    sql_Store store = Open();
    const std::unique_ptr<cls_MementoRead> record(store.OpenRoot("box"));
#define READ(N, T, A, B, C)                                                                                            \
    EXPECT_EQ(record->Read##N(Field(#N), A), B) << #N;                                                                 \
    EXPECT_EQ(record->Read##N(Field("absent"), A), A) << #N;                                                           \
    EXPECT_EQ(record->Read##N##Array(Field(#N "s"), {}), (cow_1DArray<T>{A, B, C})) << #N;                             \
    EXPECT_EQ(record->Read##N##Array(Field("no" #N "s"), {A}), cow_1DArray<T>()) << #N;                                \
    const auto matrix##N = record->Read##N##Matrix(Field(#N "Matrix"), {});                                            \
    ASSERT_EQ(matrix##N.Rows(), 3) << #N;                                                                              \
    EXPECT_EQ(matrix##N(2, 0), T(C)) << #N;                                                                            \
    EXPECT_EQ(matrix##N(0, 1), T()) << #N;
    KINDS(READ)
#undef READ
    EXPECT_TRUE(std::isnan(record->ReadDouble(Field("nan"), 0)));
    EXPECT_TRUE(std::signbit(record->ReadDouble(Field("zero"), 1)));
    EXPECT_EQ(Said([&] { record->ReadInt(Field("Double"), 0); }),
              "'" + Path() + "' record 2: field 'Double' holds double, not int");
}

TEST_F(StoreTest, Every_collection_of_values_comes_back)
{
    {
        sql_Store store = Create();
        Save(store, [](const cls_WriteVisitor& visitor) {
            cls_MementoWrite& record = *visitor.Memento();
            std::uint32_t element = 10;
#define WRITE_LIST(N, T, A, B, C)                                                                                      \
    {                                                                                                                  \
        const std::unique_ptr<cls_WriteListPrim<T>> list(record.Make##N##ListWriter(element++));                       \
        list->Append(A);                                                                                               \
        list->AppendArray({B, C});                                                                                     \
        list->AppendArray({});                                                                                         \
    }
#define WRITE_MAPS(N, T, A, B, C)                                                                                      \
    {                                                                                                                  \
        const std::unique_ptr<cls_WriteMapInt2Prim<T>> ints(record.MakeIntMap##N##Writer(element++));                  \
        const std::unique_ptr<cls_WriteMapString2Prim<T>> texts(record.MakeStringMap##N##Writer(element++));           \
        ints->Write(5, A);                                                                                             \
        ints->Write(LEAST, B);                                                                                         \
        ints->Write(5, C);                                                                                             \
        texts->Write("\x7F", A);                                                                                       \
        texts->Write(cow_String("\0", 1), B);                                                                          \
        texts->Write("\x7F", C);                                                                                       \
    }
            KINDS(WRITE_LIST)
            KEYED(WRITE_MAPS)
#undef WRITE_LIST
#undef WRITE_MAPS
            const std::unique_ptr<cls_WriteIntTableInt> table(record.MakeIntTableWriter(element));
            table->Write(3, -3);
        });
        store.Commit();
    }
    Travel("collections.vx");
    sql_Store store = Open();
    const std::unique_ptr<cls_MementoRead> record(store.OpenRoot("box"));
    std::uint32_t element = 10;
#define READ_LIST(N, T, A, B, C)                                                                                       \
    {                                                                                                                  \
        const std::unique_ptr<cls_ReadListPrim<T>> list(record->Make##N##ListReader(element++));                       \
        ASSERT_EQ(list->Size(), 3) << #N;                                                                              \
        EXPECT_TRUE(list->Next() && list->Value() == A) << #N;                                                         \
        EXPECT_TRUE(list->Next() && list->Array() == (cow_1DArray<T>{B, C})) << #N;                                    \
        EXPECT_TRUE(list->Next() && list->Array().IsEmpty()) << #N;                                                    \
        EXPECT_TRUE(!list->Next() && !list->Next()) << #N;                                                             \
        EXPECT_NE(Said([&] { list->Value(); }), "nothing");                                                            \
        list->Seek(1);                                                                                                 \
        EXPECT_TRUE(list->Next() && list->Array().Length() == 2) << #N;                                                \
    }
#define READ_MAPS(N, T, A, B, C)                                                                                       \
    {                                                                                                                  \
        const std::unique_ptr<cls_ReadMapInt2Prim<T>> ints(record->MakeIntMap##N##Reader(element++));                  \
        const std::unique_ptr<cls_ReadMapString2Prim<T>> texts(record->MakeStringMap##N##Reader(element++));           \
        EXPECT_TRUE(ints->Next() && ints->Key() == LEAST && ints->Value() == B) << #N;                                 \
        EXPECT_TRUE(ints->Next() && ints->Key() == 5 && ints->Value() == C && !ints->Next()) << #N;                    \
        EXPECT_TRUE(texts->Next() && texts->Key() == cow_String("\0", 1) && texts->Value() == B) << #N;                \
        EXPECT_TRUE(texts->Next() && texts->Key() == "\x7F" && texts->Value() == C && !texts->Next()) << #N;           \
    }
    KINDS(READ_LIST)
    KEYED(READ_MAPS)
#undef READ_LIST
#undef READ_MAPS
    const std::unique_ptr<cls_ReadIntTableInt> table(record->MakeIntTableReader(element));
    EXPECT_TRUE(table->Next() && table->Key() == 3 && table->Value() == -3 && !table->Next());
    EXPECT_EQ(record->MakeIntListReader(99), nullptr);
    EXPECT_NE(Said([&] { record->MakeIntListReader(10); }), "nothing");
}

template <class T> void ExpectListComesBack(sql_Store& store, const cls_xp1DArrayList<T>& list)
{
    store.WriteRoot("list", [&](const cls_WriteVisitor& visitor) { list.DBWrite(visitor); });
    const cls_ReadVisitor visitor(store.OpenRoot("list"));
    const cls_xp1DArrayList<T> read(visitor);
    EXPECT_EQ(read.Arrays(), list.Arrays());
    EXPECT_EQ(read.Uid(), visitor.GetUid());
}

TEST_F(StoreTest, Lists_of_arrays_come_back_and_are_checked_against_the_attribute)
{
    constexpr std::uint32_t holder = Part::ID + 1;
    registrar.CreateClassMD("Holder", holder, 1, nullptr, 1)
        .AddAttribute(Field("rows"), cls_ATTRIBUTE_INT, 1, static_cast<cls_CollectionType>(54));
    sql_Store store = Create();
    const cls_xp1DArrayList<int> ints({{1, 2}, {}, {LEAST}});
    const cls_xp1DArrayList<double> doubles({{0.5}});
    ExpectListComesBack(store, ints);
    ExpectListComesBack(store, doubles);
    ExpectListComesBack(store, cls_xp1DArrayList<float>({{}, {0.5f}}));
    const auto saveIn = [&](const auto& list) {
        store.WriteRoot("holder", [&](const cls_WriteVisitor& visitor) {
            ASSERT_EQ(visitor.StartWrite(holder, box), 1);
            list.DBWrite(cls_WriteVisitor(visitor, Field("rows"), nullptr));
        });
    };
    saveIn(ints);
    EXPECT_EQ(std::unique_ptr<cls_MementoRead>(store.OpenRoot("holder"))->ClassId(Field("rows")), 0x230001U);
    EXPECT_NE(Said([&] { saveIn(doubles); }).find("of type 54, and is written as one of type 52"), std::string::npos);
}

/// The labels of a stored list of parts, "a b c".
std::string Labels(cls_MementoRead& record, std::uint32_t element)
{
    std::string labels;
    const std::unique_ptr<cls_ReadListObj> list(record.MakeObjListReader(element));
    while (list->Next()) {
        EXPECT_NE(list->ClassId(), 0U);
        labels += std::string(Part(cls_ReadVisitor(list->MakeReader())).label.view()) + " ";
    }
    return labels;
}

TEST_F(StoreTest, Objects_are_found_in_fields_lists_and_maps_with_their_identity)
{
    const Part first("first");
    const Part second("second", 2.5);
    Part copy = first;
    copy.label = "copy";
    sql_Store store = Create();
    const auto save = [&](const std::vector<const Part*>& listed) {
        Save(store, [&](const cls_WriteVisitor& visitor) {
            first.DBWrite(cls_WriteVisitor(visitor, Field("part"), nullptr));
            const std::unique_ptr<cls_WriteListObj> list(visitor.Memento()->MakeObjListWriter(5));
            for (const Part* part : listed) {
                part->DBWrite(cls_WriteVisitor(cls_WriteRequestListObj(list.get())));
            }
            const std::unique_ptr<cls_WriteMapString2Obj> map(visitor.Memento()->MakeStringMapObjWriter(6));
            const cow_String key("key");
            second.DBWrite(cls_WriteVisitor(cls_WriteRequestMapString2Obj(map.get(), key)));
        });
        store.Commit();
        const std::unique_ptr<cls_MementoRead> record(store.OpenRoot("box"));
        return Labels(*record, 5);
    };
    EXPECT_EQ(save({&first, &second, &copy}), "first second copy ");
    EXPECT_EQ(save({&copy}), "copy ");
    EXPECT_EQ(save({}), "");
    EXPECT_EQ(save({&second, &first}), "second first ");

    sql_Store reader = Open();
    const std::unique_ptr<cls_MementoRead> record(reader.OpenRoot("box"));
    EXPECT_EQ(record->ClassId(Field("part")), Part::ID);
    const Part read(cls_ReadVisitor(record->MakeFieldReader(Field("part"))));
    const std::unique_ptr<cls_ReadListObj> list(record->MakeObjListReader(5));
    list->Seek(1);
    ASSERT_TRUE(list->Next());
    EXPECT_EQ(Part(cls_ReadVisitor(list->MakeReader())).uid, read.uid); // as the two shared one when they were saved
    const std::unique_ptr<cls_ReadMapString2Obj> map(record->MakeStringMapObjReader(6));
    ASSERT_TRUE(map->Next() && map->Key() == "key");
    EXPECT_EQ(Part(cls_ReadVisitor(map->MakeReader())).weight, 2.5);
}

TEST_F(StoreTest, An_agent_of_objects_changes_a_stored_list_in_place)
{
    sql_Store store = Create();
    std::unique_ptr<cls_AgentListObj> agent;
    Save(store, [&](const cls_WriteVisitor& visitor) { agent.reset(visitor.Memento()->MakeObjListAgent()); });
    std::vector<std::string> model;
    std::mt19937 random(7);
    for (int step = 0; step < 60; ++step) {
        const int at = static_cast<int>(random() % (model.size() + 1));
        const auto place = model.begin() + at;
        if (step % 25 == 24) {
            agent->Clear();
            model.clear();
        } else if (random() % 3 == 0 && place != model.end()) {
            agent->RemoveAt(at);
            model.erase(place);
        } else {
            const Part part(std::to_string(step));
            part.DBWrite(cls_WriteVisitor(cls_AgentRequestListObj(agent.get(), at)));
            place == model.end() ? model.push_back(std::to_string(step)) : void(*place = std::to_string(step));
        }
        if (step % 10 == 9) {
            store.Commit();
        }
        std::vector<std::string> stored;
        for (int i = 0; i < agent->Size(); ++i) {
            stored.emplace_back(Part(cls_ReadVisitor(agent->MakeReader(i))).label.view());
        }
        ASSERT_EQ(stored, model) << "after step " << step;
    }
    EXPECT_NE(Said([&] { agent->MakeReader(agent->Size()); }), "nothing");
}

TEST_F(StoreTest, An_agent_of_a_list_that_was_rolled_back_meets_no_other_programs_records)
{
    Create();
    std::unique_ptr<cls_AgentListObj> agents[2];
    const auto save = [&](sql_Store& store, std::unique_ptr<cls_AgentListObj>& agent) {
        Save(store, [&](const cls_WriteVisitor& visitor) { agent.reset(visitor.Memento()->MakeObjListAgent()); });
        Part("one").DBWrite(cls_WriteVisitor(cls_AgentRequestListObj(agent.get(), 0)));
    };
    sql_Store store = Open();
    save(store, agents[0]);
    store.Rollback();
    sql_Store other = Open();
    save(other, agents[1]);
    other.Commit();
    const Part part("two");
    const std::function<void()> calls[] = {
        [&] { agents[0]->IsChanged(); },
        [&] { agents[0]->MakeReader(0); },
        [&] { part.DBWrite(cls_WriteVisitor(cls_AgentRequestListObj(agents[0].get(), 0))); },
        [&] { agents[0]->Clear(); },
    };
    for (const auto& call : calls) {
        EXPECT_NE(Said(call).find("it was removed, or never committed"), std::string::npos) << Said(call);
    }
}

/// Puts parts under random keys of a map that an agent serves, and takes them out.
template <class K, class Agent> void ExpectMapFollows(Agent& agent, sql_Store& store, const std::vector<K>& keys)
{
    std::map<K, std::string> model;
    std::mt19937 random(7);
    for (int step = 0; step < 60; ++step) {
        const K& key = keys[random() % keys.size()];
        if (step % 25 == 24) {
            agent.Clear();
            model.clear();
        } else if (random() % 3 == 0) {
            EXPECT_EQ(agent.Remove(key), model.erase(key) == 1);
        } else {
            model[key] = std::to_string(step);
            Part(model[key]).DBWrite(cls_WriteVisitor(cls_AgentRequestMapKey2Obj<K>(&agent, key)));
        }
        if (step % 10 == 9) {
            store.Commit();
        }
        const cow_1DArray<K> stored = agent.Keys();
        ASSERT_EQ(agent.Size(), static_cast<int>(model.size())) << "after step " << step;
        ASSERT_TRUE(std::equal(stored.begin(), stored.end(), model.begin(), model.end(),
                               [](const K& left, const auto& right) { return left == right.first; }));
        for (const K& each : keys) {
            const std::unique_ptr<cls_MementoRead> reader(agent.MakeReader(each));
            ASSERT_EQ(agent.ClassId(each), model.contains(each) ? Part::ID : 0) << "after step " << step;
            ASSERT_EQ(reader != nullptr ? reader->ReadString(Field("label"), "none") : "", model[each].c_str());
            std::erase_if(model, [](const auto& entry) { return entry.second.empty(); });
        }
    }
}

TEST_F(StoreTest, Agents_of_objects_change_stored_maps_in_place)
{
    sql_Store store = Create();
    std::unique_ptr<cls_AgentMapKey2Obj<int>> ints;
    std::unique_ptr<cls_AgentMapKey2Obj<cow_String>> texts;
    Save(store, [&](const cls_WriteVisitor& visitor) {
        const std::unique_ptr<cls_MementoWrite> first(visitor.Memento()->MakeElementWriter(5, cls_Uid::AllocateUid()));
        const std::unique_ptr<cls_MementoWrite> second(visitor.Memento()->MakeElementWriter(6, cls_Uid::AllocateUid()));
        ints.reset(first->MakeIntMapObjAgent());
        texts.reset(second->MakeStringMapObjAgent());
        const std::unique_ptr<cls_WriteMapInt2Obj> map(visitor.Memento()->MakeIntMapObjWriter(7));
        Part("written").DBWrite(cls_WriteVisitor(cls_WriteRequestMapInt2Obj(map.get(), LEAST)));
    });
    ExpectMapFollows<int>(*ints, store, {LEAST, -1, 0, 7});
    ExpectMapFollows<cow_String>(*texts, store, {"", ODD_TEXT, "\xC3\xA4", "a"});
    const std::unique_ptr<cls_MementoRead> record(store.OpenRoot("box"));
    const std::unique_ptr<cls_ReadMapInt2Obj> map(record->MakeIntMapObjReader(7));
    EXPECT_TRUE(map->Next() && map->Key() == LEAST && map->ClassId() == Part::ID && !map->Next());
    Part("last").DBWrite(cls_WriteVisitor(cls_AgentRequestMapKey2Obj<int>(ints.get(), 3)));
    EXPECT_TRUE(store.RemoveRoot("box"));
    store.Commit();
    EXPECT_EQ(Check(), "sound");
}

template <class T> class StoredArray : public StoreTest
{
protected:
    static T Value(int i)
    {
        if constexpr (std::is_same_v<T, cow_String>) {
            return cow_String(i);
        } else {
            return static_cast<T>(i);
        }
    }
};
using Elements = testing::Types<bool, double, float, int, cow_String, std::uint32_t>;
TYPED_TEST_SUITE(StoredArray, Elements);

TYPED_TEST(StoredArray, Pages_and_survives_commit_rollback_and_reopening)
{
    constexpr int COUNT = 5000;
    {
        sql_Store store = this->Create();
        cls_ArrayPrim<TypeParam> array;
        for (int i = 0; i < COUNT; ++i) {
            array.Append(this->Value(i));
        }
        this->SaveField(store, "array", array);
        store.Commit();
        array.Get(3000) = this->Value(1);
        array.Append(this->Value(2));
        store.Commit(); // flushes what no save has written
        array.Get(0) = this->Value(9);
        array.Flush();
        store.Rollback();
        EXPECT_EQ(array.Snap(), 1);
        EXPECT_EQ(array.ConstGet(0), this->Value(0));
        this->SaveField(store, "array", array);
        std::unique_ptr<TypeParam[]> block(new TypeParam[3000]);
        std::fill_n(block.get(), 3000, this->Value(3));
        array.AppendBlock(block.get(), 3000);
        store.Commit();
    }
    sql_Store store = this->Open();
    const auto array = this->template ReadField<cls_ArrayPrim<TypeParam>>(store, "array");
    ASSERT_EQ(array.Size(), COUNT + 1 + 3000);
    for (int i = 0; i < array.Size(); ++i) {
        const int expected = i == 3000 ? 1 : i < COUNT ? i : i == COUNT ? 2 : 3;
        ASSERT_EQ(array.ConstGet(i), this->Value(expected)) << i;
    }
}

TEST_F(StoreTest, Arrays_keep_their_values_in_memory_and_in_every_place_of_two_stores_also_when_a_save_fails)
{
    struct Kept
    {
        cls_ArrayPrim<int> array;
        std::vector<int> model;
    };
    const auto holds = [](const cls_ArrayPrim<int>& array, const std::vector<int>& model) {
        bool isSame = array.Size() == static_cast<int>(model.size());
        for (int i = 0; isSame && i < array.Size(); ++i) {
            isSame = array.ConstGet(i) == model[static_cast<std::size_t>(i)];
        }
        return isSame;
    };
    constexpr const char* places[] = {"a", "b", "c"};
    sql_Store stores[] = {Create(), Create("other.vx")};
    Kept kept[4];
    std::mt19937 random(3);
    for (int step = 0; step < 200; ++step) {
        Kept& one = kept[random() % 3];
        switch (random() % 4) {
        case 0:
            one = Kept();
            for (auto left = random() % 5000; left > 0; --left) {
                one.array.Append(one.model.emplace_back(static_cast<int>(left)));
            }
            kept[3].array = one.array; // a copy that is in memory, of the same uid
            kept[3].model = one.model;
            break;
        case 1:
            if (!one.model.empty()) {
                const std::size_t at = random() % one.model.size();
                one.array.Get(static_cast<int>(at)) = one.model[at] = step;
            }
            break;
        default: {
            const bool fails = random() % 3 == 0;
            for (int left = fails ? 2 : 0; left > 0; --left) {
                stores[left - 1].Commit(); // a rollback takes back what was paged out
            }
            sql_Store& store = stores[random() % 2];
            const Kept* saved[3];
            std::generate(saved, saved + 3, [&] { return random() % 4 == 0 ? nullptr : &kept[random() % 4]; });
            const std::string said = Said([&] {
                Save(store, [&](const cls_WriteVisitor& visitor) {
                    for (int i = 0; i < 3; ++i) {
                        if (saved[i] != nullptr) {
                            saved[i]->array.DBWrite(cls_WriteVisitor(visitor, Field(places[i]), nullptr));
                        }
                    }
                    fails ? throw nex_TextException("it fails") : void();
                });
                store.Commit();
            });
            ASSERT_EQ(said, fails ? "it fails" : "nothing") << "step " << step;
            for (int i = 0; i < 3 && !fails; ++i) {
                const auto read = ReadField<cls_ArrayPrim<int>>(store, places[i]);
                ASSERT_TRUE(holds(read, saved[i] != nullptr ? saved[i]->model : std::vector<int>()))
                    << places[i] << " at step " << step;
            }
            for (const Kept& each : kept) {
                ASSERT_TRUE(holds(each.array, each.model)) << "step " << step;
            }
        }
        }
    }
    cls_ArrayPrim<int> late;
    for (int i = 0; i < 3000; ++i) {
        late.Append(i);
    }
    const auto save = [&](sql_Store&& store) {
        SaveField(store, "a", late);
        store.Commit();
    };
    save(Create("third.vx"));
    EXPECT_EQ(Said([&] { save(Create("fourth.vx")); }), "the store was closed");
}

TEST_F(StoreTest, Arrays_on_one_list_leave_it_sound_and_see_what_the_others_appended)
{
    const auto open = [](sql_Store& store) { return ReadField<cls_ArrayPrim<int>>(store, "array"); };
    sql_Store store = Create();
    const int values[3000] = {};
    Save(store, [&](const cls_WriteVisitor& visitor) {
        cls_ArrayPrim<int> array;
        array.DBWrite(cls_WriteVisitor(visitor, Field("array"), nullptr));
        array.AppendBlock(values, 3000);
    });
    store.Commit();
    cls_ArrayPrim<int> array = open(store);
    array.Get(2999) = 1;
    {
        sql_Store other = Open();
        open(other).AppendBlock(values, 3000);
        other.Commit();
    }
    store.Commit();
    EXPECT_EQ(array.Snap(), 1);
    EXPECT_EQ(array.Snap(), 0);
    EXPECT_EQ(array.Size(), 6000);
    EXPECT_EQ(array.ConstGet(2999), 1);
    EXPECT_EQ(array.ConstGet(5999), 0);

    sql_Store other = Open();
    cls_ArrayPrim<int> arrays[] = {open(store), open(store), open(other)};
    std::mt19937 random(1);
    for (int step = 0; step < 200; ++step) {
        cls_ArrayPrim<int>& one = arrays[random() % 3];
        const int at = static_cast<int>(random() % static_cast<unsigned>(one.Size()));
        switch (random() % 4) {
        case 0:
            one.AppendBlock(values, at % 2500);
            break;
        case 1:
            one.Append(at);
            break;
        case 2:
            one.Get(at) = step;
            break;
        default:
            one.ConstGet(at);
        }
        store.Commit();
        other.Commit();
    }
    const cls_ArrayPrim<int> all = open(store);
    EXPECT_EQ(all.Size(), std::max({arrays[0].Size(), arrays[1].Size(), arrays[2].Size()}));
    for (int i = 0; i < all.Size(); i += 100) {
        all.ConstGet(i);
    }
}

TEST_F(StoreTest, A_walk_that_reads_ahead_sees_damage_and_changes_where_and_when_they_are_due)
{
    constexpr int BLOCK = 2048;
    sql_Store store = Create();
    Save(store, [&](const cls_WriteVisitor& visitor) {
        cls_ArrayPrim<int> array;
        array.DBWrite(cls_WriteVisitor(visitor, Field("array"), nullptr));
        for (int block = 0; block < 14; ++block) {
            array.AppendBlock(std::vector<int>(BLOCK, block).data(), BLOCK);
        }
    });
    store.Commit();
    cls_ArrayPrim<int> array = ReadField<cls_ArrayPrim<int>>(store, "array");
    const auto walk = [&array](int from, int to) {
        std::vector<int> met;
        for (int block = from; block < to; ++block) {
            met.push_back(array.ConstGet(block * BLOCK + 7));
        }
        return met;
    };
    EXPECT_EQ(walk(0, 3), (std::vector{0, 1, 2}));
    array.Get(4 * BLOCK + 7) = 40; // was read ahead
    EXPECT_EQ(walk(3, 6), (std::vector{3, 40, 5}));
    store.Commit();
    EXPECT_EQ(walk(0, 3), (std::vector{0, 1, 2}));
    {
        sql_Store other = Open();
        cls_ArrayPrim<int> changed = ReadField<cls_ArrayPrim<int>>(other, "array");
        changed.Get(4 * BLOCK + 7) = 41;
        changed.Flush();
        other.Commit();
    }
    EXPECT_EQ(array.Snap(), 1);
    EXPECT_EQ(walk(3, 6), (std::vector{3, 41, 5}));
    Tamper("UPDATE block SET data = zeroblob(8192) WHERE id & 1048575 = 12");
    EXPECT_EQ(walk(0, 12).back(), 11);
    EXPECT_NE(Said([&] { walk(12, 13); }).find("block 12 of record"), std::string::npos);
    EXPECT_EQ(walk(13, 14).back(), 13);
    for (const std::size_t bytes : {std::size_t{40000}, std::size_t{0}}) { // of a block ahead, and of none
        store.SetCacheBytes(bytes);
        EXPECT_EQ(walk(1, 6), (std::vector{1, 2, 3, 41, 5}));
    }
}

TEST_F(StoreTest, An_old_version_of_a_class_is_read_through_its_own_metadata_and_upgraded_by_a_save)
{
    {
        cls_ClassRegistrar old;
        Part::Register(old, 1);
        sql_Store store = sql_Store::Create(Path(), old);
        const Part part("old", 5);
        store.WriteRoot("part", [&](const cls_WriteVisitor& visitor) { part.DBWrite(visitor); });
        store.Commit();
    }
    sql_Store store = Open();
    const std::unique_ptr<Part> part = ReadPart(store);
    EXPECT_EQ(part->version, 1);
    EXPECT_EQ(part->weight, 1);
    store.WriteRoot("part", [&](const cls_WriteVisitor& visitor) { part->DBWrite(visitor); });
    store.Commit();
    EXPECT_EQ(ReadPart(store)->version, 2);

    cls_ClassRegistrar old;
    Part::Register(old, 1);
    sql_Store newer = sql_Store::OpenReadOnly(Path(), old);
    EXPECT_EQ(newer.UnknownClasses(), std::vector<std::string>{"Part version 2"});
    EXPECT_EQ(Said([&] { newer.ReadRoot("part"); }),
              "'" + Path() + "' record 2: this program cannot build its class, Part version 2");
}

TEST_F(StoreTest, Objects_of_unknown_classes_are_left_out_kept_and_reported)
{
    constexpr std::uint32_t strange = Part::ID + 1;
    Part known("known");
    Part other("other");
    other.classId = strange;
    const auto save = [&](sql_Store& store, const std::vector<const Part*>& parts) {
        Save(store, [&](const cls_WriteVisitor& visitor) {
            if (parts.size() > 1) {
                other.DBWrite(cls_WriteVisitor(visitor, Field("field"), nullptr));
            }
            const std::unique_ptr<cls_WriteListObj> list(visitor.Memento()->MakeObjListWriter(5));
            for (const Part* part : parts) {
                part->DBWrite(cls_WriteVisitor(cls_WriteRequestListObj(list.get())));
            }
        });
        store.Commit();
    };
    {
        cls_ClassRegistrar all;
        Part::Register(all, 2);
        Part::Register(all, 2, "Strange", strange);
        sql_Store store = sql_Store::Create(Path(), all);
        save(store, {&other, &known});
    }
    {
        sql_Store store = Open();
        EXPECT_EQ(store.UnknownClasses(), std::vector<std::string>{"Strange version 2"});
        const std::unique_ptr<cls_MementoRead> record(store.OpenRoot("box"));
        EXPECT_EQ(Labels(*record, 5), "known ");
        EXPECT_EQ(record->DataIsPresent(Field("field")), 0);
        EXPECT_EQ(record->MakeFieldReader(Field("field")), nullptr);
        const cls_Uid same(record->GetUidEntry());
        store.WriteRoot("box", [&](const cls_WriteVisitor& visitor) {
            ASSERT_EQ(visitor.StartWrite(BOX, same), 1);
            const std::unique_ptr<cls_WriteListObj> list(visitor.Memento()->MakeObjListWriter(5));
            known.DBWrite(cls_WriteVisitor(cls_WriteRequestListObj(list.get())));
        });
        store.Commit();
    }
    cls_ClassRegistrar all;
    Part::Register(all, 2);
    Part::Register(all, 2, "Strange", strange);
    sql_Store store = sql_Store::OpenReadOnly(Path(), all);
    const std::unique_ptr<cls_MementoRead> record(store.OpenRoot("box"));
    EXPECT_EQ(Labels(*record, 5), "known other ");
    EXPECT_EQ(record->DataIsPresent(Field("field")), 1);
}

TEST_F(StoreTest, Writing_what_was_not_registered_is_refused_and_rolled_back)
{
    sql_Store store = Create();
    const auto write = [&](const char* field, cls_CollectionType type) {
        return Said([&] {
            store.WriteRoot("part", [&](const cls_WriteVisitor& visitor) {
                ASSERT_EQ(visitor.StartWrite(Part::ID, box), 1);
                visitor.Memento()->CheckCollectionType(type, Field("label"));
                visitor.Memento()->WriteInt(Field(field), 1);
            });
        });
    };
    EXPECT_EQ(write("height", cls_COLLECTION_NONE), "the field 'height' of class Part version 2 was not registered");
    EXPECT_EQ(
        write("label", cls_COLLECTION_ARRAY),
        "the field 'label' of class Part version 2 was registered as a collection of type 0, and is written as one "
        "of type 50");
    EXPECT_FALSE(store.InTransaction());
    EXPECT_TRUE(store.Roots().empty());
}
} // namespace
