#include "Test.h"
#include "fem_Session.h"

#include "cls_2dArrayPrim.h"
#include "nex_TextException.h"
#include "omu_Arguments.h"
#include "omu_Module.h"

namespace
{

using Field = cls_FieldHandle;
using WriteFn = std::function<void(const cls_WriteVisitor&)>;

/// A class that the kernel does not have, as a later one might.
constexpr std::uint32_t JOINT = (2000U << 16) + 1;

/// What a file holds that some program, or nobody in good faith, has written.
struct Content
{
    int lastPartId = 1;
    int id = 1;
    cow_1DArray<int> nodes{1, 2, 3, 5};
    int coordinates = 12;
    cow_1DArray<int> elements{7};
    std::vector<int> connectivity{1, 2, 3, 5};
    const char* material = "STEEL";
    cow_1DArray<int> run{1, 7, 7};
    cow_String loaded = "set";
};

class Stored : public testing::Test
{
protected:
    Stored()
    {
        omu_initialize(m_count);
        fem_RegisterClasses(m_later);
        m_later.CreateClassMD("Joint", JOINT, 3, nullptr, 1)
            .AddAttribute(Field("stiffness"), cls_ATTRIBUTE_REAL, 1, cls_COLLECTION_NONE);
    }
    ~Stored() override { omu_finalize(m_count); }

    static void Object(const cls_WriteVisitor& visitor, std::uint32_t classId, const WriteFn& fill)
    {
        ASSERT_EQ(visitor.StartWrite(classId, cls_Uid::AllocateUid()), 1);
        fill(visitor);
    }
    static void Entry(const cls_WriteVisitor& owner, const char* member, const cow_String& name, std::uint32_t classId,
                      const WriteFn& fill)
    {
        Object(cls_WriteVisitor(owner, Field(member), nullptr), fem_REPOSITORY, [&](const cls_WriteVisitor& visitor) {
            const std::unique_ptr<cls_WriteMapString2Obj> map(visitor.Memento()->MakeStringMapObjWriter(1));
            Object(cls_WriteVisitor(cls_WriteRequestMapString2Obj(map.get(), name)), classId, fill);
        });
    }
    static void Mesh(const cls_WriteVisitor& visitor, const Content& content)
    {
        visitor.Memento()->WriteIntArray(Field("nodes"), content.nodes);
        visitor.Memento()->WriteIntArray(Field("elements"), content.elements);
        cow_2DArray<int> connectivity(static_cast<int>(content.connectivity.size()) / 4, 4);
        std::copy(content.connectivity.begin(), content.connectivity.end(), connectivity.Write());
        visitor.Memento()->WriteIntMatrix(Field("connectivity"), connectivity);
        cls_2dArrayPrim<float> coordinates;
        for (int i = 0; i < content.coordinates; ++i) {
            coordinates.Append(1.0f);
        }
        coordinates.DBWrite(cls_WriteVisitor(visitor, Field("coordinates"), nullptr));
    }
    static void Model(const cls_WriteVisitor& model, const Content& content)
    {
        model.Memento()->WriteInt(Field("lastPartId"), content.lastPartId);
        Entry(model, "parts", "part", fem_PART, [&](const cls_WriteVisitor& part) {
            part.Memento()->WriteInt(Field("id"), content.id);
            fem_SubstanceConstant(content.material).DBWrite(cls_WriteVisitor(part, Field("material"), nullptr));
            Object(cls_WriteVisitor(part, Field("mesh"), nullptr), fem_MESH,
                   [&](const cls_WriteVisitor& mesh) { Mesh(mesh, content); });
        });
        Entry(model, "materials", "STEEL", fem_MATERIAL, [](const cls_WriteVisitor& material) {
            fem_SubstanceConstant("STEEL").DBWrite(cls_WriteVisitor(material, Field("substance"), nullptr));
            material.Memento()->WriteDouble(Field("density"), 2.0);
        });
        Entry(model, "sets", "set", fem_SET, [&](const cls_WriteVisitor& set) {
            const std::unique_ptr<cls_WriteListPrim<int>> runs(set.Memento()->MakeIntListWriter(2));
            runs->AppendArray(content.run);
        });
        Entry(model, "steps", "step", fem_STEP, [&](const cls_WriteVisitor& step) {
            fem_ProcedureConstant("STATIC").DBWrite(cls_WriteVisitor(step, Field("procedure"), nullptr));
            const std::unique_ptr<cls_WriteMapString2Prim<double>> loads(step.Memento()->MakeStringMapDoubleWriter(2));
            loads->Write(content.loaded, 1.0);
        });
    }
    /// A file with one model, "m".
    std::string File(std::uint32_t classId, const WriteFn& fill)
    {
        std::filesystem::remove(m_folder / "file");
        sql_Store store = sql_Store::Create(m_folder / "file", m_later);
        store.WriteRoot("session", [&](const cls_WriteVisitor& visitor) {
            Object(visitor, fem_SESSION,
                   [&](const cls_WriteVisitor& session) { Entry(session, "models", "m", classId, fill); });
        });
        store.Commit();
        return m_folder / "file";
    }
    static cow_String Call(fem_Session& session, const char* method, const std::string& path)
    {
        omu_Arguments arguments(1);
        arguments.Put(cow_String(path));
        bool deprecated = false;
        const std::unique_ptr<const omu_Primitive> result(session.CallMethod("session", method, arguments, deprecated));
        return result->AsString(0);
    }

    const ScratchFolder m_folder;
    cls_ClassRegistrar m_later;

private:
    int m_count = 0;
};

TEST_F(Stored, Objects_of_unknown_classes_are_named_and_survive_a_save)
{
    const std::string file =
        File(JOINT, [](const cls_WriteVisitor& joint) { joint.Memento()->WriteDouble(Field("stiffness"), 2.5); });
    {
        fem_Session session;
        EXPECT_EQ(Call(session, "open", file), "('Joint version 3',)");
        Call(session, "createModel", "other");
        Call(session, "save", file);
    }
    sql_Store store = sql_Store::OpenReadOnly(file, m_later);
    const cls_ReadVisitor root(store.OpenRoot("session"));
    const cls_ReadVisitor models(root, Field("models"));
    const std::unique_ptr<cls_ReadMapString2Obj> map(models.Memento()->MakeStringMapObjReader(1));
    ASSERT_TRUE(map->Next() && map->ClassId() == JOINT);
    const std::unique_ptr<cls_MementoRead> joint(map->MakeReader());
    EXPECT_EQ(joint->ReadDouble(Field("stiffness"), 0), 2.5);
    EXPECT_TRUE(map->Next() && map->Key() == "other");
}

TEST_F(Stored, A_store_without_a_session_that_the_kernel_reads_is_refused)
{
    const std::string none = m_folder / "none";
    sql_Store::Create(none, m_later);
    fem_Session session;
    EXPECT_EQ(ErrorOf([&] { Call(session, "open", none); }),
              "'" + none +
                  "' holds no models: the save that made it did not come to its end, or another program made it");
    m_later.CreateClassMD("Session", fem_SESSION, 2, nullptr, 1)
        .AddAttribute(Field("models"), cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_STRING_KEYED);
    const std::string newer = File(fem_MODEL, [](const cls_WriteVisitor&) {});
    EXPECT_EQ(ErrorOf([&] { Call(session, "open", newer); }),
              "'" + newer + "' has a session that this program cannot read");
}

TEST_F(Stored, What_does_not_fit_together_is_refused_and_named)
{
    const std::pair<void (*)(Content&), const char*> rows[] = {
        {[](Content&) {}, ""},
        {[](Content& c) { c.lastPartId = -1; }, "(Model): parts cannot have had ids up to -1"},
        {[](Content& c) { c.lastPartId = 2147483647; }, "(Model): parts cannot have had ids up to 2147483647"},
        {[](Content& c) { c.id = 0; }, "(Part): a part cannot have the id 0"},
        {[](Content& c) { c.id = 2; }, "(Part): a part cannot have the id 2"},
        {[](Content& c) { c.nodes.Set(1, 3); }, "(Mesh): node 3 is out of order"},
        {[](Content& c) { c.nodes.Set(0, -1); }, "(Mesh): node -1 is out of order"},
        {[](Content& c) { c.coordinates = 13; }, "(Mesh): its arrays differ in length"},
        {[](Content& c) { c.elements.Append(8); }, "(Mesh): its arrays differ in length"},
        {[](Content& c) { c.connectivity[2] = 4; }, "(Mesh): element 7 is out of order, or a node of it is not there"},
        {[](Content& c) { c.material = "TITANIUM"; }, "(Part): its material TITANIUM is not there"},
        {[](Content& c) { c.run.Set(0, 2); }, "(Set): it has elements of a part that is not there"},
        {[](Content& c) { c.run = {}; }, "(Set): it has elements of a part that is not there"},
        {[](Content& c) { c.run.Set(2, 8); }, "(Set): session.models['m'].parts['part'] has no element 8"},
        {[](Content& c) { c.loaded = "gone"; }, "(Step): there is no set 'gone' for its load"},
    };
    for (const auto& [change, message] : rows) {
        Content content;
        change(content);
        const std::string file = File(fem_MODEL, [&](const cls_WriteVisitor& model) { Model(model, content); });
        fem_Session session;
        const std::string said = ErrorOf<nex_TextException>([&] { Call(session, "open", file); });
        EXPECT_TRUE(said.empty() ? *message == '\0' : said.starts_with("'" + file + "' record ")) << said;
        EXPECT_TRUE(said.ends_with(message)) << said << " instead of " << message;
    }
}

} // namespace
