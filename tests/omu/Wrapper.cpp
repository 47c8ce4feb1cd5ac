#include "Values.h"
#include "typ_ArchCompTable.h"

namespace
{

/// A class of some application: counts the objects alive.
struct Mesh
{
    static constexpr std::uint32_t TYPE_ID = (0x7001U << 16) + 1;
    static inline int alive = 0;

    explicit Mesh(int number) : nodes(number) { ++alive; }
    explicit Mesh(bio_Ifilter&) : Mesh(0) {}
    Mesh(const Mesh&) = delete;
    Mesh& operator=(const Mesh&) = delete;
    ~Mesh() { --alive; }

    static void* CtorFunc(bio_Ifilter& in, void* place) { return obj_Construct<Mesh>(in, place); }
    static void DtorFunc(void* object) { obj_Destroy<Mesh>(object); }
    static void ReadData(bio_Ifilter& in, void* object) { in >> static_cast<Mesh*>(object)->nodes; }
    static void WriteData(bio_Ofilter& out, const void* object) { out << static_cast<const Mesh*>(object)->nodes; }
    static void PrintData(pnt_PrettyPrint& out, const void*)
    {
        out.Open("Mesh");
        out.Close();
    }

    int nodes;
};

class Wrapper : public testing::Test
{
protected:
    static constexpr typ_Entry rows[] = {{}, typ_EntryOf<Mesh>(typ_VALUE, "Mesh", typ_ROOT)};

    void SetUp() override { typ_ArchCompTable::InsertEntry(Mesh::TYPE_ID >> 16, {rows, 2}); }
    void TearDown() override
    {
        EXPECT_EQ(Mesh::alive, 0);
        typ_ArchCompTable::InsertEntry(Mesh::TYPE_ID >> 16, {});
    }

    static const Mesh& MeshOf(const omu_PrimWrapper& wrapper) { return *static_cast<const Mesh*>(wrapper.Object()); }
};

} // namespace

TEST_F(Wrapper, A_copy_has_an_object_and_attributes_of_its_own)
{
    auto first = std::make_unique<omu_PrimWrapper>(Mesh::TYPE_ID, new Mesh(8));
    first->Attributes().Put(1, "refined");
    const std::unique_ptr<omu_Primitive> copy(first->Copy());
    auto& second = static_cast<omu_PrimWrapper&>(*copy);
    EXPECT_EQ(Mesh::alive, 2);
    second.Attributes().Put(2, "refined");
    int refined = 0;
    EXPECT_TRUE(first->Attributes().Get(refined, "refined"));
    EXPECT_EQ(refined, 1);
    first.reset();
    EXPECT_EQ(MeshOf(second).nodes, 8);
    EXPECT_EQ(second.WrappedTypeId(), Mesh::TYPE_ID);
    EXPECT_TRUE(second.IsA(omu_Primitive::TypeId()));
    EXPECT_FALSE(second.IsA(Mesh::TYPE_ID));
}

TEST_F(Wrapper, Reading_replaces_the_object_and_takes_the_type_that_was_read)
{
    bio_Ofilter out;
    omu_PrimWrapper target(Mesh::TYPE_ID, new Mesh(5));
    omu_PrimWrapper::WriteData(out, &target);
    static_cast<Mesh*>(target.Object())->nodes = 3;
    bio_Ifilter in(out.Data(), out.Size());
    omu_PrimWrapper::ReadData(in, &target);
    EXPECT_EQ(MeshOf(target).nodes, 5);
    EXPECT_EQ(Mesh::alive, 1);

    // A cut stream leaves nothing behind either.
    bio_Ifilter cut(out.Data(), out.Size() - 1);
    EXPECT_THROW(omu_PrimWrapper::ReadData(cut, &target), nex_TextException);
    ExpectRefused(Stream(omu_PrimWrapper(Mesh::TYPE_ID, new Mesh(5))), {{"an object of no stated type", 4, 0}});
}

TEST_F(Wrapper, Assertions_stand_for_what_must_not_be_asked)
{
    RecordedAssertions assertions;
    {
        const omu_PrimWrapper wrapper(Mesh::TYPE_ID, nullptr);
        EXPECT_FALSE(wrapper == wrapper);
        wrapper.Accept(nullptr);
        EXPECT_EQ(wrapper.TypeString() + wrapper.AsString(0), "WrapperWrapper");
    }
    auto orphan = std::make_unique<Mesh>(1);
    omu_PrimWrapper(Mesh::TYPE_ID + 1, orphan.get());
    const Texts expected = {"Wrappers should not be compared", "Wrappers should not be visited", "dtor != 0"};
    EXPECT_EQ(assertions.Take(), expected);
    EXPECT_THROW(delete omu_PrimWrapper(Mesh::TYPE_ID + 1, orphan.get()).Copy(), nex_TextException);
}
