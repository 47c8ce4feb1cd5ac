#include "MementoDouble.h"
#include "VirtualSlots.h"
#include "cls_AgentListPrim.h"
#include "cls_AgentRequest.h"
#include "cls_CollectionReaders.h"
#include "cls_CollectionWriters.h"
#include "cls_ObjectAgents.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"

namespace
{
std::string Name(Field field)
{
    return std::string(field.FieldName().view());
}

struct RecordingWriter : MementoWriteDouble
{
    RecordingWriter(Texts& where, bool refusal = false) : log(where), refuses(refusal) {}
    ~RecordingWriter() override { log.emplace_back("gone"); }

    int FieldIsPresent(Field field) override { return field.FieldName() == "known" ? 7 : 0; }
    cls_MementoWrite* MakeFieldWriter(Field field, std::uint32_t classId, const cls_Uid&,
                                      const cls_PayloadHolder* payload) override
    {
        return Note("field '" + Name(field) + "' class " + std::to_string(classId) + (payload ? " payload" : ""));
    }
    cls_MementoWrite* MakeElementWriter(std::uint32_t element, const cls_Uid&) override
    {
        return Note("element " + std::to_string(element));
    }
    void CheckCollectionType(cls_CollectionType type, Field field) override
    {
        log.push_back("check " + std::to_string(type) + " '" + Name(field) + "'");
    }
    cls_MementoWrite* Note(const std::string& call) const
    {
        log.push_back(call);
        return refuses ? nullptr : new RecordingWriter(log);
    }

    Texts& log;
    bool refuses;
};

struct Request : cls_AgentRequest
{
    explicit Request(const RecordingWriter& collection) : target(collection) {}
    cls_MementoWrite* MakeWriteObj(std::uint32_t classId, const cls_Uid&) const override
    {
        return target.Note("request class " + std::to_string(classId));
    }
    const RecordingWriter& target;
};

struct RecordingReader : MementoReadDouble
{
    explicit RecordingReader(Texts& where, const std::string& name = "r") : log(where), id(name) {}
    ~RecordingReader() override { log.push_back("gone " + id); }
    cow_String DbId() override { return id.c_str(); }
    cls_MementoRead* MakeFieldReader(Field field) override { return new RecordingReader(log, Name(field)); }
    cls_MementoRead* Clone() override { return new RecordingReader(log, "clone"); }

    Texts& log;
    const std::string id;
};

const cls_FieldHandle FIELD("part");
const auto* const PAYLOAD = reinterpret_cast<const cls_PayloadHolder*>(&FIELD);

TEST(WriteVisitor, Asks_for_a_record_once_and_in_the_order_request_element_field)
{
    const cls_Uid uid = cls_Uid::AllocateUid();
    Texts log;
    {
        auto* const record = new RecordingWriter(log);
        const cls_WriteVisitor root(record);
        const Request request(*record);
        const cls_WriteVisitor requested(request);
        const cls_WriteVisitor element(root, 0);
        const cls_WriteVisitor sentinel(root, cls_WriteVisitor::NO_ELEMENT);
        const cls_WriteVisitor field(root, FIELD, PAYLOAD);
        for (const auto* visitor : {&requested, &element, &sentinel, &field}) {
            EXPECT_EQ(visitor->Memento(), nullptr);
            EXPECT_EQ(visitor->FieldIsPresent(cls_FieldHandle("known")), 0);
            EXPECT_EQ(visitor->StartWrite(9, uid), 1);
            EXPECT_EQ(visitor->StartWrite(9, uid), 1);
            EXPECT_EQ(visitor->FieldIsPresent(cls_FieldHandle("known")), 7);
        }
        EXPECT_EQ(log, Texts({"request class 9", "element 0", "field '' class 9", "field 'part' class 9 payload"}));
        log.clear();
    }
    EXPECT_EQ(log, Texts(5, "gone"));
}

TEST(WriteVisitor, A_refused_record_refuses_what_is_inside_it)
{
    const cls_Uid uid = cls_Uid::AllocateUid();
    Texts log;
    auto* const record = new RecordingWriter(log, /*refuses=*/true);
    const cls_WriteVisitor root(record);
    const cls_WriteVisitor field(root, FIELD, nullptr);
    const cls_WriteVisitor inner(field, FIELD, nullptr);
    EXPECT_EQ(field.StartWrite(9, uid), 0);
    EXPECT_EQ(inner.StartWrite(9, uid), 0);
    inner.CheckCollectionType(cls_COLLECTION_ARRAY);
    EXPECT_EQ(cls_WriteVisitor(Request(*record)).StartWrite(8, uid), 0);
    EXPECT_EQ(log, Texts({"field 'part' class 9", "request class 8"}));
    EXPECT_EQ(cls_WriteVisitor(static_cast<cls_MementoWrite*>(nullptr)).StartWrite(9, uid), 0);
}

TEST(WriteVisitor, A_given_memento_is_ready_and_only_a_named_field_has_its_collection_checked)
{
    Texts log;
    const cls_WriteVisitor root(new RecordingWriter(log));
    EXPECT_EQ(root.StartWrite(5, cls_Uid::AllocateUid()), 1);
    EXPECT_EQ(root.FieldIsPresent(cls_FieldHandle("known")), 7);
    root.CheckCollectionType(cls_COLLECTION_ARRAY);
    cls_WriteVisitor(root, FIELD, nullptr).CheckCollectionType(cls_COLLECTION_2D_ARRAY);
    cls_WriteVisitor(root, cls_FieldHandle(), nullptr).CheckCollectionType(cls_COLLECTION_2D_ARRAY);
    cls_WriteVisitor(root, 3).CheckCollectionType(cls_COLLECTION_2D_ARRAY);
    EXPECT_EQ(log, Texts({"check 80 'part'"}));
}

TEST(ReadVisitor, Shares_the_uid_and_makes_children_from_its_memento)
{
    Texts log;
    {
        const cls_ReadVisitor visitor(new RecordingReader(log));
        EXPECT_EQ(visitor.GetUid(), visitor.GetUid());
        EXPECT_EQ(visitor.GetUid().Entry()->GetRefCnt(), 2);
        EXPECT_EQ(cls_ReadVisitor(visitor).DbId(), "clone");
        EXPECT_EQ(cls_ReadVisitor(visitor, FIELD).DbId(), "part");
    }
    EXPECT_EQ(log, Texts({"gone clone", "gone part", "gone r"}));
}

TEST(ReadVisitor, Without_a_record_gives_defaults_and_fresh_uids)
{
    const cls_ReadVisitor nothing(nullptr);
    for (const cls_ReadVisitor& visitor : {nothing, cls_ReadVisitor(nothing, FIELD)}) {
        EXPECT_EQ(visitor.FieldIsPresent(FIELD), 0);
        EXPECT_EQ(visitor.DataIsPresent(FIELD), 0);
        EXPECT_EQ(visitor.Read(FIELD, "default"), "default");
        EXPECT_EQ(visitor.DbId(), "");
        const cls_Uid first = visitor.GetUid();
        EXPECT_NE(first, visitor.GetUid());
    }
}

TEST(Interfaces, Operations_stand_at_their_promised_positions)
{
    using R = cls_MementoRead;
    using W = cls_MementoWrite;
    ExpectSlots({At(1, &R::DbId), At(4, &R::DataIsPresent), At(6, &R::MakeFieldReader), At(8, &R::ReadString),
                 At(28, &R::MakeBoolListReader), At(34, &R::MakeObjListReader), At(50, &R::MakeStringMapObjAgent),
                 At(54, &R::MakeIntListAgent), At(56, &R::MakeUnsignedListAgent)});
    ExpectSlots({At(1, &W::FieldIsPresent), At(4, &W::WriteString), At(25, &W::MakeIntListWriter),
                 At(28, &W::MakeObjListWriter), At(48, &W::MakeIntListAgent), At(51, &W::CheckCollectionType)});
    ExpectSlots({At(3, &cls_AgentListPrim<int>::EndWrite), At(7, &cls_AgentListPrim<int>::Detach),
                 At(10, &cls_AgentListPrim<int>::Register), At(7, &cls_AgentListObj::MakeWriteObj),
                 At(13, &cls_AgentListObj::Register), At(8, &cls_AgentMapKey2Obj<int>::MakeWriteObj),
                 At(14, &cls_AgentMapKey2Obj<int>::Register), At(5, &cls_ReadListPrim<int>::Seek),
                 At(4, &cls_ReadMapString2Prim<int>::Value), At(4, &cls_ReadMapInt2Obj::MakeReader),
                 At(2, &cls_WriteListPrim<int>::AppendArray)});
}
} // namespace
