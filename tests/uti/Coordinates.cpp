#include "uti_CoordCont3D.h"

#include "../RecordedAssertions.h"
#include "../cls/MementoDouble.h"
#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "cls_ClassRegistrar.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "nex_TextException.h"
#include "uti_Module.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <sstream>
#include <string>
#include <vector>

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
    struct
    {
        const char* name;
        void (*action)(uti_CoordCont3D&);
        int length;
        bool isFixed;
    } const rows[] = {
        {"append", [](uti_CoordCont3D& c) { c.Append(1, 2); }, 11, false},
        {"grow a little",
         [](uti_CoordCont3D& c) {
             EXPECT_TRUE(c.Grow(50));
             c.Remove(0);
             c.Append(0.0f, 0.0f);
         },
         50, true},
        {"grow much", [](uti_CoordCont3D& c) { EXPECT_TRUE(c.Grow(100)); }, 100, false},
        {"shrink", [](uti_CoordCont3D& c) { EXPECT_TRUE(c.Grow(3)); }, 3, true},
        {"grow from nothing",
         [](uti_CoordCont3D& c) {
             c.ClearAll();
             EXPECT_TRUE(c.Grow(150));
         },
         150, true},
        {"set behind", [](uti_CoordCont3D& c) { EXPECT_TRUE(c.SetCoord(10, 1, 2, 3)); }, 11, true},
        {"and back",
         [](uti_CoordCont3D& c) {
             c.Append(1, 2);
             c.GetCArray();
         },
         11, true},
        {"no memory",
         [](uti_CoordCont3D& c) {
             EXPECT_FALSE(c.Grow(0x7FFFFFFF));
             EXPECT_FALSE(c.Grow(-1));
         },
         10, true},
    };
    for (const auto& row : rows) {
        uti_CoordCont3D container = Fixed(10);
        row.action(container);
        EXPECT_EQ(container.Length(), row.length) << row.name;
        EXPECT_EQ(container.IsFixed(), row.isFixed) << row.name;
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
        const int pair[] = {index, index / 2, index};
        switch (below(9)) {
        case 0:
            container.Append(x, x + 1);
            model.push_back(point);
            break;
        case 1:
            container.Append(flat, 4, 2);
            model.insert(model.end(), {point, point});
            break;
        case 2:
            EXPECT_TRUE(container.SetCoord(index, x, x + 1, 0));
            model.resize(std::max(model.size(), static_cast<std::size_t>(index) + 1));
            model[static_cast<std::size_t>(index)] = point;
            break;
        case 3:
            EXPECT_EQ(container.Remove(index), isPoint);
            if (isPoint) {
                model.erase(model.begin() + index);
            }
            break;
        case 4:
            EXPECT_EQ(container.Remove(pair, 3), isPoint);
            if (isPoint) {
                model.erase(model.begin() + index);
                model.erase(model.begin() + index / 2, model.begin() + index / 2 + (index / 2 != index));
            }
            break;
        case 5: {
            const int length = container.Length() + below(9) - 5;
            EXPECT_EQ(container.Grow(length), length >= 0);
            model.resize(length >= 0 ? static_cast<std::size_t>(length) : model.size());
            break;
        }
        case 6:
            EXPECT_EQ(container.GetCArray() == nullptr, container.Length() == 0 && !container.IsFixed());
            break;
        case 7:
            if (model.size() < 200) {
                container.Append(container);
                const Points twice = model;
                model.insert(model.end(), twice.begin(), twice.end());
            }
            break;
        default:
            container = uti_CoordCont3D(container);
        }
        if (isPoint && index < container.Length()) {
            EXPECT_EQ(container[index], uti_Coord3D(model[static_cast<std::size_t>(index)][0],
                                                    model[static_cast<std::size_t>(index)][1], 0));
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
    EXPECT_EQ(assertions.Take(),
              (std::vector<std::string>{"! (arrayLength % 2)", "! (arrayLength % dim)", "realArray != 0", "0",
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
        bio_Ofilter out;
        out << &containers[i] << uti_Coord3D(1, 2, 3);
        bio_Ifilter in(out.Data(), out.Size());
        uti_CoordCont3D* read = nullptr;
        uti_Coord3D point;
        in >> read >> point;
        EXPECT_TRUE(*read == containers[i]);
        EXPECT_TRUE(read->IsA(uti_CoordCont3D::TypeId()));
        EXPECT_EQ(point, uti_Coord3D(1, 2, 3));
        delete read;
        std::ostringstream text;
        pnt_PrettyPrint print(text);
        uti_CoordCont3D::PrintData(print, &containers[i]);
        EXPECT_EQ(text.str(), dumps[i]);
        for (std::size_t size = 0; size + 16 < out.Size(); ++size) {
            bio_Ifilter truncated(out.Data(), size);
            EXPECT_THROW(truncated >> read, nex_TextException) << size;
        }
    }
    bio_Ofilter odd;
    odd << cow_1DArray<float>(4);
    bio_Ifilter in(odd.Data(), odd.Size());
    uti_CoordCont3D container = Fixed(1);
    EXPECT_THROW(uti_CoordCont3D::ReadData(in, &container), nex_TextException);
    EXPECT_EQ(container.Length(), 1);
    uti_finalize(users);
}

/// What a record holds, to write to and to read from.
struct Record
{
    int count = 0;
    cow_2DArray<float> matrix;
    cow_1DArray<float> array;
};

class Writer : public MementoWriteDouble
{
public:
    explicit Writer(Record& record) : m_record(record) {}
    void WriteInt(const cls_FieldHandle& field, int value) override
    {
        EXPECT_EQ(field.FieldName(), "numCoord");
        m_record.count = value;
    }
    void WriteFloatMatrix(const cls_FieldHandle& field, const cow_2DArray<float>& value) override
    {
        EXPECT_EQ(field.FieldName(), "tempCoord");
        m_record.matrix = value;
    }
    void WriteFloatArray(const cls_FieldHandle& field, const cow_1DArray<float>& value) override
    {
        EXPECT_EQ(field.FieldName(), "c");
        m_record.array = value;
    }

private:
    Record& m_record;
};

class Reader : public MementoReadDouble
{
public:
    explicit Reader(const Record& record) : m_record(record) {}
    cow_String DbId() override { return "r"; }
    int ReadInt(const cls_FieldHandle&, int) override { return m_record.count; }
    cow_2DArray<float> ReadFloatMatrix(const cls_FieldHandle&, const cow_2DArray<float>&) override
    {
        return m_record.matrix;
    }
    cow_1DArray<float> ReadFloatArray(const cls_FieldHandle&, const cow_1DArray<float>&) override
    {
        return m_record.array;
    }

private:
    const Record& m_record;
};

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
    container.DBWrite(cls_WriteVisitor(new Writer(record)));
    uti_Coord3D(1, 2, 3).DBWrite(cls_WriteVisitor(new Writer(record)));
    cls_ReadVisitor visitor(new Reader(record));
    const std::unique_ptr<uti_CoordCont3D> read(static_cast<uti_CoordCont3D*>(metadata.Ctor()(visitor)));
    EXPECT_TRUE(*read == container);
    EXPECT_EQ(read->Uid(), visitor.GetUid());
    EXPECT_EQ(uti_Coord3D(visitor), uti_Coord3D(1, 2, 3));
    record.count = 4;
    record.array.Append(0.0f);
    EXPECT_THROW(uti_CoordCont3D damaged(visitor), nex_TextException);
    EXPECT_THROW(uti_Coord3D damaged(visitor), nex_TextException);
    EXPECT_EQ(uti_CoordCont3D(cls_ReadVisitor(nullptr)).Length(), 0);
}
} // namespace
