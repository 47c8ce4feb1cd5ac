#include "uti_CoordCont3D.h"

#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "cls/MementoDouble.h"
#include "cls_ClassRegistrar.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "nex_TextException.h"
#include "uti_Module.h"
#include "utl/StreamChecks.h"

namespace
{
using Points = std::vector<std::array<float, 3>>;

Points Read(const uti_CoordCont3D& container)
{
    Points points(static_cast<std::size_t>(container.Length()));
    for (int i = 0; i < container.Length(); ++i) {
        auto& [x, y, z] = points[static_cast<std::size_t>(i)];
        EXPECT_TRUE(container.GetCoord(i, x, y, z));
    }
    return points;
}

uti_CoordCont3D Fixed(int count)
{
    auto* const array = new float[static_cast<std::size_t>(count) * 3];
    for (int i = 0; i < 3 * count; ++i) {
        array[i] = static_cast<float>(i);
    }
    return {array, 3 * count, 3};
}

TEST(Coordinates, Arrays_are_taken_over_and_pairs_get_a_zero)
{
    EXPECT_EQ(Read({new float[4]{1, 2, 3, 4}, 4, 2}), (Points{{1, 2, 0}, {3, 4, 0}}));
    EXPECT_EQ(Read({new float[2][2]{{1, 2}, {3, 4}}, 2}), (Points{{1, 2, 0}, {3, 4, 0}}));
    float* const array = new float[6]{1, 2, 3, 4, 5, 6};
    const uti_CoordCont3D container(array, 6, 3);
    EXPECT_EQ(container.GetCArray(), array) << "the fixed form costs nothing";
}

TEST(Coordinates, The_form_changes_when_the_array_is_outgrown)
{
    const std::tuple<const char*, bool (*)(uti_CoordCont3D&), int, bool> rows[] = {
        {"append", [](uti_CoordCont3D& c) { return c.Append(1, 2), true; }, 11, false},
        {"grow a little", [](uti_CoordCont3D& c) { return c.Grow(50) && c.Remove(0) && (c.Append(0.0f, 0.0f), true); },
         50, true},
        {"grow much", [](uti_CoordCont3D& c) { return c.Grow(100); }, 100, false},
        {"shrink", [](uti_CoordCont3D& c) { return c.Grow(3); }, 3, true},
        {"grow from nothing", [](uti_CoordCont3D& c) { return c.ClearAll(), c.Grow(150); }, 150, true},
        {"set behind", [](uti_CoordCont3D& c) { return c.SetCoord(10, 1, 2, 3); }, 11, true},
        {"and back", [](uti_CoordCont3D& c) { return c.Append(1, 2), c.GetCArray() != nullptr; }, 11, true},
        {"no memory", [](uti_CoordCont3D& c) { return !c.Grow(0x7FFFFFFF) && !c.Grow(-1); }, 10, true},
    };
    for (const auto& [name, action, length, isFixed] : rows) {
        uti_CoordCont3D container = Fixed(10);
        EXPECT_TRUE(action(container)) << name;
        EXPECT_EQ(container.Length(), length) << name;
        EXPECT_EQ(container.IsFixed(), isFixed) << name;
    }
}

TEST(Coordinates, Random_operations_agree_with_a_vector_in_either_form)
{
    std::mt19937 random(5);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    uti_CoordCont3D container;
    Points model;
    for (int round = 0; round < 5000; ++round) {
        const auto x = static_cast<float>(round);
        const int index = below(static_cast<int>(model.size()) + 1);
        const bool isPoint = index < container.Length();
        const std::array<float, 3> point{x, x + 1, 0};
        const float flat[] = {x, x + 1, x, x + 1};
        const int pair[] = {index / 2, index, index / 2};
        if (const int what = below(9); what == 0) {
            container.Append(x, x + 1);
            model.push_back(point);
        } else if (what == 1) {
            container.Append(flat, 4, 2);
            model.insert(model.end(), {point, point});
        } else if (what == 2) {
            EXPECT_TRUE(container.SetCoord(index, x, x + 1, 0));
            model.resize(std::max(model.size(), static_cast<std::size_t>(index) + 1));
            model[static_cast<std::size_t>(index)] = point;
        } else if (what == 3) {
            EXPECT_EQ(container.Remove(index), isPoint);
            model.erase(model.begin() + index, model.begin() + index + isPoint);
        } else if (what == 4) {
            EXPECT_EQ(container.Remove(pair, 3), isPoint);
            model.erase(model.begin() + index, model.begin() + index + isPoint);
            model.erase(model.begin() + index / 2, model.begin() + index / 2 + (isPoint && index / 2 != index));
        } else if (what == 5) {
            const int length = container.Length() + below(9) - 5;
            EXPECT_EQ(container.Grow(length), length >= 0);
            model.resize(length >= 0 ? static_cast<std::size_t>(length) : model.size());
        } else if (what == 6) {
            EXPECT_EQ(container.GetCArray() == nullptr, container.Length() == 0 && !container.IsFixed());
        } else if (what == 7 && model.size() < 200) {
            container.Append(container);
            const Points twice = model;
            model.insert(model.end(), twice.begin(), twice.end());
        } else {
            container = uti_CoordCont3D(container);
        }
        if (isPoint && index < container.Length()) {
            const auto& [modelX, modelY, zero] = model[static_cast<std::size_t>(index)];
            EXPECT_EQ(container[index], uti_Coord3D(modelX, modelY, zero));
        }
        ASSERT_EQ(Read(container), model) << "round " << round;
    }
}

TEST(Coordinates, Misuse_is_an_assertion)
{
    RecordedAssertions assertions;
    uti_CoordCont3D container(new float[5]{1, 2, 3, 4, 5}, 5, 2);
    container.Append(container.GetCArray(), 5, 3);
    container.Append(static_cast<const float*>(nullptr), 3, 3);
    EXPECT_FALSE(container.SetCoord(3, 0, 0, 0));
    EXPECT_EQ(container[2], uti_Coord3D());
    EXPECT_EQ(container.Length(), 2);
    container.SetCArray(new float[1], 0, 3);
    EXPECT_EQ(container.Length(), 0);
    EXPECT_EQ(assertions.Take(), (Texts{"! (arrayLength % 2)", "! (arrayLength % dim)", "realArray != 0", "0",
                                        "index < numCoord", "arrayLength > 0"}));
}

TEST(Coordinates, Points_are_equal_when_strictly_nearer_than_the_tolerance)
{
    uti_CoordCont3D container;
    container.Append(1e20f, 0);
    container.Append(1e20f, 3, 4);
    EXPECT_FALSE(container.AreCoordsEqual(0, 0, 0.0f));
    EXPECT_TRUE(container.AreCoordsEqual(0, 0, 1e-6f));
    EXPECT_FALSE(container.AreCoordsEqual(0, 1, 5.0f));
    EXPECT_TRUE(container.AreCoordsEqual(0, 1, 5.001f));
    EXPECT_FALSE(container.AreCoordsEqual(0, 2, 1e30f));
    EXPECT_FALSE(container.AreCoordsEqual(-1, 0, 1e30f));
}

TEST(Coordinates, Streams_and_dumps_hold_the_points_of_either_form)
{
    int users = 0;
    uti_initialize(users);
    uti_CoordCont3D containers[] = {Fixed(2), Fixed(2), {}};
    containers[1].Append(6, 7, 8);
    const char* const dumps[] = {"Fixed array:\n0 1 2\n3 4 5\n", "Mutated array:\n0 1 2\n3 4 5\n6 7 8\n",
                                 "uti_CoordCont3D is empty\n"};
    for (int i = 0; i < 3; ++i) {
        ExpectStreamed(containers[i]);
        std::ostringstream text;
        pnt_PrettyPrint print(text);
        uti_CoordCont3D::PrintData(print, &containers[i]);
        EXPECT_EQ(text.str(), dumps[i]);
    }
    ExpectStreamed(uti_Coord3D(1, 2, 3));
    uti_CoordCont3D* pointer = nullptr;
    EXPECT_EQ(ReadFrom(BytesOf(&containers[1]), pointer), "");
    const std::unique_ptr<uti_CoordCont3D> read(pointer);
    EXPECT_TRUE(*read == containers[1] && read->IsA(uti_CoordCont3D::TypeId()));
    bio_Ofilter odd;
    odd << cow_1DArray<float>(4);
    bio_Ifilter in(odd.Data(), odd.Size());
    uti_CoordCont3D container = Fixed(1);
    EXPECT_THROW(uti_CoordCont3D::ReadData(in, &container), nex_TextException);
    EXPECT_EQ(container.Length(), 1);
    uti_finalize(users);
}

TEST(Coordinates, Are_stored_by_their_metadata)
{
    cls_ClassRegistrar registrar;
    uti_Coord3D::InitializeMetadata(registrar);
    uti_CoordCont3D::InitializeMetadata(registrar);
    const cls_ClassMetadata& metadata = registrar.GetClassMetadata(registrar.GetClassID("uti_CoordCont3D"), 203);
    EXPECT_EQ(metadata.FindAttribute("tempCoord")->Collection(), 83u);

    uti_CoordCont3D container = Fixed(2);
    container.Append(6, 7, 8);
    Record record;
    container.DBWrite(cls_WriteVisitor(new MementoWriteDouble(&record)));
    uti_Coord3D(1, 2, 3).DBWrite(cls_WriteVisitor(new MementoWriteDouble(&record)));
    EXPECT_EQ(std::any_cast<cow_1DArray<float>>(record.at("c")), (cow_1DArray<float>{1, 2, 3}));
    EXPECT_EQ(std::any_cast<cow_2DArray<float>>(record.at("tempCoord"))(2, 1), 7);
    cls_ReadVisitor visitor(new MementoReadDouble(&record));
    const std::unique_ptr<uti_CoordCont3D> read(static_cast<uti_CoordCont3D*>(metadata.Ctor()(visitor)));
    EXPECT_TRUE(*read == container);
    EXPECT_EQ(read->Uid(), visitor.GetUid());
    EXPECT_EQ(uti_Coord3D(visitor), uti_Coord3D(1, 2, 3));
    record["numCoord"] = 4;
    record["c"] = cow_1DArray<float>(4);
    EXPECT_THROW(uti_CoordCont3D damaged(visitor), nex_TextException);
    EXPECT_THROW(uti_Coord3D damaged(visitor), nex_TextException);
    EXPECT_EQ(uti_CoordCont3D(cls_ReadVisitor(nullptr)).Length(), 0);
}
} // namespace
