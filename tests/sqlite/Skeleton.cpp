#include "skeleton.h" // the engine that docs/storage.md shows
#include "StoreTest.h"
#include "cls_ArrayPrim.h"

namespace
{
TEST_F(StoreTest, The_engine_in_the_documentation_keeps_a_model)
{
    sql_Store store(std::make_unique<MemoryRecords>(), registrar);
    const Part part("label", 4);
    cls_ArrayPrim<double> array;
    for (int i = 0; i < 5000; ++i) {
        array.Append(i);
    }
    Save(store, [&](const cls_WriteVisitor& visitor) {
        part.DBWrite(cls_WriteVisitor(visitor, cls_FieldHandle("part"), nullptr));
        array.DBWrite(cls_WriteVisitor(visitor, cls_FieldHandle("array"), nullptr));
    });
    store.Commit();
    EXPECT_EQ(ReadField<Part>(store, "part").weight, 4);
    EXPECT_EQ(ReadField<cls_ArrayPrim<double>>(store, "array").ConstGet(4999), 4999);
}
} // namespace
