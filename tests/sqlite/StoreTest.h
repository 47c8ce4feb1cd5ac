#pragma once

#include "../Golden.h"
#include "../Test.h"
#include "VEXcrt_System.h"
#include "cls_ClassRegistrar.h"
#include "cls_CollectionReaders.h"
#include "cls_CollectionRequests.h"
#include "cls_CollectionWriters.h"
#include "cls_FieldHandle.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_Module.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "nex_TextException.h"
#include "sql_Store.h"
#include "vexstore.h"

#include <iostream>
#include <sqlite3.h>

/// A stored class: a label, and, from its second version on, a weight of 1 unless it was stored.
struct Part
{
    static constexpr std::uint32_t ID = (77U << 16) + 1;

    explicit Part(const std::string& text = "", double number = 1) : label(text.c_str()), weight(number) {}
    explicit Part(const cls_ReadVisitor& visitor)
        : uid(visitor.GetUid()), label(visitor.Read(cls_FieldHandle("label"), "none")),
          weight(visitor.Memento()->ReadDouble(cls_FieldHandle("weight"), 1)),
          version(visitor.Memento()->ClassVersion())
    {}
    static void* Ctor(cls_ReadVisitor& visitor) { return new Part(visitor); }
    static void Register(cls_ClassRegistrar& registrar, int version, const char* name = "Part", std::uint32_t id = ID)
    {
        cls_ClassMetadata& metadata = registrar.CreateClassMD(name, id, version, Ctor, 1);
        metadata.AddAttribute(cls_FieldHandle("label"), cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE);
        if (version > 1) {
            metadata.AddAttribute(cls_FieldHandle("weight"), cls_ATTRIBUTE_REAL, 1, cls_COLLECTION_NONE);
        }
    }
    void DBWrite(const cls_WriteVisitor& visitor) const
    {
        if (visitor.StartWrite(classId, uid) != 0) {
            visitor.Memento()->WriteString(cls_FieldHandle("label"), label);
            if (visitor.FieldIsPresent(cls_FieldHandle("weight")) != 0) {
                visitor.Memento()->WriteDouble(cls_FieldHandle("weight"), weight);
            }
        }
    }

    cls_Uid uid = cls_Uid::AllocateUid();
    cow_String label;
    double weight = 1;
    int version = 0;
    std::uint32_t classId = ID;
};

/// Stores in a folder of the test's own, with a registry of Part and of "Box", which has no attributes on record and so may
/// have any field.
class StoreTest : public testing::Test
{
protected:
    static constexpr std::uint32_t BOX = cls_TypeIdOf(cls_ARRAY_PRIM_ROW); // any class that only the type tables name

    StoreTest()
    {
        cls_initialize(m_count);
        std::filesystem::remove_all(m_folder);
        std::filesystem::create_directories(m_folder);
        Part::Register(registrar, 1);
        Part::Register(registrar, 2);
    }
    ~StoreTest() override
    {
        cls_finalize(m_count);
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    std::string Path(const std::string& name = "model.vx") const { return m_folder + "/" + name; }
    sql_Store Create(const std::string& name = "model.vx") const { return sql_Store::Create(Path(name), registrar); }
    sql_Store Open(const std::string& name = "model.vx") const { return sql_Store::Open(Path(name), registrar); }

    /// Compares the file with one of the tests' data, which Linux wrote, and puts that into its place: what follows reads
    /// the file of another system. Another version of SQLite may lay out pages in its own way.
    void Travel(const std::string& name) const
    {
        const std::string golden = Golden(VEXOMU_TEST_DATA "/" + name, Bytes());
        constexpr std::size_t VERSION_PLACE = 96; // in the header of an SQLite file
        ASSERT_GT(golden.size(), VERSION_PLACE);
        if (golden.compare(VERSION_PLACE, 4, Bytes(), VERSION_PLACE, 4) == 0) {
            EXPECT_TRUE(golden == Bytes()) << name;
        }
        Put(golden);
    }

    /// Saves a Box under "box".
    void Save(sql_Store& store, const std::function<void(const cls_WriteVisitor&)>& fill)
    {
        store.WriteRoot("box", [&](const cls_WriteVisitor& visitor) {
            ASSERT_EQ(visitor.StartWrite(BOX, box), 1);
            fill(visitor);
        });
    }
    /// Saves a Box with just an object in a field, and reads the object back.
    template <class T> void SaveField(sql_Store& store, const char* field, const T& object)
    {
        Save(store, [&](const cls_WriteVisitor& visitor) {
            object.DBWrite(cls_WriteVisitor(visitor, cls_FieldHandle(field), nullptr));
        });
    }
    template <class T> static T ReadField(sql_Store& store, const char* field)
    {
        return T(cls_ReadVisitor(cls_ReadVisitor(store.OpenRoot("box")), cls_FieldHandle(field)));
    }
    static std::unique_ptr<Part> ReadPart(sql_Store& store, const char* name = "part")
    {
        return std::unique_ptr<Part>(static_cast<Part*>(store.ReadRoot(name)));
    }
    /// Runs statements on a file without the engine.
    void Tamper(const std::string& statements, const std::string& name = "model.vx") const
    {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(Path(name).c_str(), &db), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(db, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
        sqlite3_close(db);
    }
    std::string Bytes() const
    {
        std::ifstream file(Path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Put(const std::string& bytes) const { std::ofstream(Path(), std::ios::binary) << bytes; }
    /// What vexstore's check says, in this process; "sound" when it finds nothing.
    std::string Check() const
    {
        std::ostringstream said;
        std::streambuf* const shown = std::cout.rdbuf(said.rdbuf());
        sql_RecordFile file(Path(), sql_RecordFile::Mode::READ_ONLY);
        const int status = ::Check(file);
        std::cout.rdbuf(shown);
        return status == DONE ? "sound" : said.str();
    }
    /// What a failing call says; "nothing" when it does not fail.
    template <class F> static std::string Said(F call)
    {
        const std::string said = ErrorOf<nex_TextException>(call);
        return said.empty() ? "nothing" : said;
    }

    cls_ClassRegistrar registrar;
    const cls_Uid box = cls_Uid::AllocateUid();

private:
    const std::string m_folder = testing::TempDir() + "store_" +
                                 testing::UnitTest::GetInstance()->current_test_info()->name() +
                                 std::to_string(VEXCRT::ProcessId());
    int m_count = 0;
};
