#pragma once

#include "StoreTest.h"
#include "cls_ArrayPrim.h"

/// A model that changes as a whole: its array holds `stamp` throughout, and its label says the same.
struct Model
{
    static constexpr int LENGTH = 5000;

    explicit Model(int stamp) : part(std::to_string(stamp)) { Fill(stamp); }
    explicit Model(const cls_ReadVisitor& visitor)
        : uid(visitor.GetUid()), part(cls_ReadVisitor(visitor, cls_FieldHandle("part"))),
          array(cls_ReadVisitor(visitor, cls_FieldHandle("array")))
    {}
    void Fill(int stamp)
    {
        part.label = std::to_string(stamp).c_str();
        for (int i = array.Size(); i < LENGTH; ++i) {
            array.Append(stamp);
        }
        for (int i = 0; i < LENGTH; ++i) {
            array.Get(i) = stamp;
        }
    }
    void Save(sql_Store&& store, std::uint32_t classId) const { Save(store, classId); }
    void Save(sql_Store& store, std::uint32_t classId) const
    {
        store.WriteRoot("model", [&](const cls_WriteVisitor& visitor) {
            if (visitor.StartWrite(classId, uid) != 0) {
                part.DBWrite(cls_WriteVisitor(visitor, cls_FieldHandle("part"), nullptr));
                array.DBWrite(cls_WriteVisitor(visitor, cls_FieldHandle("array"), nullptr));
            }
        });
        store.Commit();
    }
    /// The stamp, -1 when the model is not of one piece.
    int Stamp() const
    {
        const int stamp = std::atoi(part.label.AsCharPtr());
        bool isWhole = array.Size() == LENGTH;
        for (int i = 0; isWhole && i < LENGTH; ++i) {
            isWhole = array.ConstGet(i) == stamp;
        }
        return isWhole ? stamp : -1;
    }

    cls_Uid uid = cls_Uid::AllocateUid();
    Part part;
    cls_ArrayPrim<int> array;
};
