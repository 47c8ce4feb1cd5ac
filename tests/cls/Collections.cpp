#include "MementoDouble.h"
#include "cls_CollectionReaders.h"
#include "cls_CollectionRequests.h"
#include "cls_CollectionWriters.h"
#include "cls_ObjectAgents.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "cls_xp1DArrayList.h"
#include "utl/StreamChecks.h"

namespace
{
using Arrays = cow_List<cow_1DArray<int>>;

/// A record that notes what is asked of it as a list of ints.
class ListRecord : public MementoWriteDouble
{
public:
    ListRecord(Texts& log, Arrays* arrays) : m_log(log), m_arrays(arrays) {}
    cls_MementoWrite* MakeFieldWriter(Field, std::uint32_t classId, const cls_Uid&, const cls_PayloadHolder*) override
    {
        m_log.push_back("class " + std::to_string(classId));
        return new ListRecord(m_log, m_arrays);
    }
    void CheckCollectionType(cls_CollectionType type, Field) override
    {
        m_log.push_back("check " + std::to_string(type));
    }
    cls_WriteListPrim<int>* MakeIntListWriter(std::uint32_t element) override
    {
        m_log.push_back("writer " + std::to_string(element));
        return m_arrays != nullptr ? new Writer(*m_arrays) : nullptr;
    }

private:
    struct Writer : cls_WriteListPrim<int>
    {
        explicit Writer(Arrays& target) : arrays(target) {}
        void Append(const int& value) override { AppendArray({value}); }
        void AppendArray(const cow_1DArray<int>& array) override { arrays.Append(array); }
        Arrays& arrays;
    };

    Texts& m_log;
    Arrays* m_arrays;
};

class ListReader : public MementoReadDouble
{
public:
    explicit ListReader(const Arrays& arrays) : m_arrays(arrays) {}
    cls_ReadListPrim<int>* MakeIntListReader(std::uint32_t element) override
    {
        return element == 1 ? new Reader(m_arrays) : nullptr;
    }

private:
    struct Reader : cls_ReadListPrim<int>
    {
        explicit Reader(const Arrays& source) : arrays(source) {}
        int Size() override { return arrays.Length(); }
        bool Next() override { return ++at < arrays.Length(); }
        int Value() override { return arrays[at][0]; }
        cow_1DArray<int> Array() override { return arrays[at]; }
        void Seek(int index) override { at = index - 1; }
        Arrays arrays;
        int at = -1;
    };

    Arrays m_arrays;
};

TEST(ArrayLists, Are_written_array_by_array_and_read_back)
{
    const cls_FieldHandle field("rows");
    const cls_xp1DArrayList<int> list(Arrays{{1, 2}, {}, {3}});
    Texts log;
    Arrays stored;
    const cls_WriteVisitor root(new ListRecord(log, &stored));
    list.DBWrite(cls_WriteVisitor(root, field, nullptr));
    EXPECT_EQ(log, Texts({"class 2293761", "check 54", "writer 1"}));
    EXPECT_EQ(stored, list.Arrays());
    const cls_ReadVisitor visitor(new ListReader(stored));
    const cls_xp1DArrayList<int> read(visitor);
    EXPECT_EQ(read.Arrays(), list.Arrays());
    EXPECT_EQ(read.Uid(), visitor.GetUid());
    EXPECT_TRUE(cls_xp1DArrayList<int>(cls_ReadVisitor(nullptr)).Arrays().IsEmpty());

    EXPECT_EQ(RefusalOf([&] { list.DBWrite(cls_WriteVisitor(new ListRecord(log, nullptr))); }),
              "In cls_xp1DArrayList::DBWrite() Missing writer.");
    EXPECT_EQ(RefusalOf([&] { cls_xp1DArrayList<double>{cls_ReadVisitor(new ListReader(stored))}; }),
              "In cls_xp1DArrayList::cls_xp1DArrayList() Missing reader.");
}

/// Notes the place and the class of what is asked for; refuses class 0.
struct Asked
{
    template <class K> cls_MementoWrite* Ask(const K& key, std::uint32_t classId)
    {
        log.push_back(std::string(cow_String(key)) + " class " + std::to_string(classId));
        return classId != 0 ? new MementoWriteDouble : nullptr;
    }
    Texts log;
};

template <class K> struct MapAgent : cls_AgentMapKey2Obj<K>, Asked
{
    int Size() override { return 0; }
    bool IsChanged() override { return false; }
    void EndWrite() override {}
    cow_1DArray<K> Keys() override { return {}; }
    std::uint32_t ClassId(const K&) override { return 0; }
    cls_MementoRead* MakeReader(const K&) override { return nullptr; }
    void Attach() override {}
    cls_MementoWrite* MakeWriteObj(const K& key, std::uint32_t id, const cls_Uid&) override { return Ask(key, id); }
    void Detach(cls_PC&) noexcept override {}
    bool IsOwnedElsewhere() noexcept override { return true; }
    bool IsReadOnly() override { return false; }
    bool Remove(const K&) override { return false; }
    void Clear() override {}
    void Register(cls_PC&) noexcept override {}
};

struct MapWriter : cls_WriteMapInt2Obj, Asked
{
    cls_MementoWrite* MakeWriteObj(const int& key, std::uint32_t id, const cls_Uid&) override { return Ask(key, id); }
};

// Lists and text keys to write are tested with the engine that stores them.
TEST(Requests, Ask_their_collection_for_the_element_and_pass_a_refusal_on)
{
    MapAgent<int> ints;
    MapAgent<cow_String> texts;
    MapWriter writer;
    const cow_String key("a key");
    const cls_AgentRequestMapKey2Obj<int> inInts(&ints, 4);
    const cls_AgentRequestMapKey2Obj<cow_String> inTexts(&texts, key);
    const cls_WriteRequestMapInt2Obj toInts(&writer, 5);
    const std::tuple<const cls_AgentRequest&, const Asked&, std::string> rows[] = {
        {inInts, ints, "4"}, {inTexts, texts, "a key"}, {toInts, writer, "5"}};
    for (const auto& [request, asked, place] : rows) {
        const cls_Uid uid = cls_Uid::AllocateUid();
        EXPECT_EQ(cls_WriteVisitor(request).StartWrite(9, uid), 1);
        EXPECT_EQ(cls_WriteVisitor(request).StartWrite(0, uid), 0);
        EXPECT_EQ(asked.log, Texts({place + " class 9", place + " class 0"}));
    }
}
} // namespace
