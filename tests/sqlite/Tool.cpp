#include "StoreTest.h"
#include "cls_ArrayPrim.h"
#include "uti_SpawnSource.h"

namespace
{
using Field = cls_FieldHandle;

class Tool : public StoreTest
{
protected:
    /// Runs vexstore; its exit status and all that it says.
    static std::pair<int, std::string> Vexstore(const std::string& arguments)
    {
        uti_SpawnSource tool((VEXSTORE " " + arguments + " 2>&1").c_str());
        const std::string said(tool.ReadAll().view());
        return {tool.Reap(0), said};
    }
    void SaveModel(const char* label, int changed)
    {
        std::filesystem::remove(Path(label));
        sql_Store store = Create(label);
        const Part part(label, 2.5);
        cls_ArrayPrim<int> array;
        for (int i = 0; i < 5000; ++i) {
            array.Append(i == changed ? -1 : i);
        }
        Save(store, [&](const cls_WriteVisitor& visitor) {
            part.DBWrite(cls_WriteVisitor(visitor, Field("part"), nullptr));
            array.DBWrite(cls_WriteVisitor(visitor, Field("array"), nullptr));
            visitor.Memento()->WriteDoubleArray(Field("loads"), {1.5, changed < 0 ? -2.0 : 3.0});
        });
        store.Commit();
    }
};

TEST_F(Tool, Shows_what_is_stored_and_only_what_differs)
{
    SaveModel("a", -1);
    SaveModel("b", 3000);
    const std::string a = Path("a");
    const std::pair<std::string, std::pair<int, std::string>> runs[] = {
        {"ls " + a,
         {0, "box  #2  cls_ArrayPrim, object, 3 rows, 32 bytes\n"
             "  'array'  #6  cls_ArrayPrim, paged list of int, 5000 values, 20000 bytes\n"
             "  'part'  #4  Part version 2, object, 2 rows, 9 bytes\n"}},
        {"show " + a + " 4",
         {0, "record 4: Part version 2, object, 2 rows, owner 2, identity 3, revision 1\n"
             "  'label'  string  \"a\"\n  'weight'  double  2.5\n"}},
        {"show " + a + " 4x", {1, "vexstore: '" + a + "' has no root or record '4x'\n"}},
        {"show " + a + " none", {1, "vexstore: '" + a + "' has no root or record 'none'\n"}},
        {"diff " + a + " " + a, {0, ""}},
        {"diff " + a + " " + Path("b"),
         {1,
          "~ box.array[3000]: 3000 -> -1\n~ box.loads[1]: -2 -> 3\n~ box.part.label: string \"a\" -> string \"b\"\n"}},
        {"check " + a, {0, a + ": 3 records, no faults\n"}},
        {"upgrade --dry-run " + a, {0, "format: 1, this program writes 1: nothing to convert\n"}},
        {"ls " + Path("none"),
         {3,
          "vexstore: '" + Path("none") + "' cannot open: unable to open database file (No such file or directory)\n"}},
    };
    for (const auto& [arguments, expected] : runs) {
        EXPECT_EQ(Vexstore(arguments), expected) << arguments;
    }
    EXPECT_EQ(Vexstore("show " + a).first, 2);
    if (std::filesystem::exists("/dev/null")) {
        EXPECT_EQ(Vexstore("check /dev/null").second,
                  "vexstore: '/dev/null' is not a store: it is a device or a pipe\n");
    }
    const auto exported = Vexstore("export " + a);
    EXPECT_EQ(exported.first, 0);
    EXPECT_NE(exported.second.find("{\"key\": \"loads\", \"kind\": \"array of double\", \"values\": [1.5, -2]}"),
              std::string::npos);
}

TEST_F(Tool, Check_finds_and_recover_names_what_is_lost)
{
    SaveModel("a", -1);
    const std::string a = Path("a");
    Tamper("DELETE FROM block WHERE id & 1048575 = 1; UPDATE field SET value = 'x' WHERE key = 'label'", "a");
    const auto check = Vexstore("check " + a);
    EXPECT_EQ(check.first, 1);
    EXPECT_NE(check.second.find("block 1 of record 6 is missing"), std::string::npos) << check.second;
    EXPECT_NE(check.second.find("field 'label' of record 4 does not match its checksum"), std::string::npos);
    EXPECT_EQ(Vexstore("ls " + a).first, 3);
    const auto recovered = Vexstore("recover " + a + " " + Path("c"));
    EXPECT_EQ(recovered.first, 1);
    EXPECT_NE(recovered.second.find("lost: values 2048 to 4999 of record 6"), std::string::npos) << recovered.second;
    EXPECT_EQ(Vexstore("check " + Path("c")), std::make_pair(0, Path("c") + ": 3 records, no faults\n"));
    sql_Store store = Open("c");
    EXPECT_EQ(ReadField<Part>(store, "part").weight, 2.5);
    SaveModel("b", -1);
    Tamper("UPDATE class SET type = 0 WHERE name = 'Part'; INSERT INTO root VALUES (char(27), 4, 0)", "b");
    EXPECT_EQ(Vexstore("recover " + Path("b") + " " + Path("d")).first, 1);
    EXPECT_NE(Vexstore("show " + Path("d") + " 4").second.find("4: lost-class-2, object, 2 rows"), std::string::npos);
    EXPECT_EQ(Vexstore("ls " + Path("d")).second.find("box  #2"), 0U);
    EXPECT_EQ(Vexstore("check " + Path("b")).second.find('\x1b'), std::string::npos);
}

TEST_F(Tool, Survives_damaged_files)
{
    SaveModel("a", -1);
    std::ifstream file(Path("a"), std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(file), {}};
    std::mt19937 random(3);
    for (int seed = 0; seed < 20; ++seed) {
        std::string damaged = whole;
        for (int flips = 0; flips < 20 * (seed % 2); ++flips) {
            damaged[random() % damaged.size()] ^= static_cast<char>(1 << random() % 8);
        }
        damaged.resize(seed % 2 != 0 ? damaged.size() : damaged.size() * static_cast<std::size_t>(seed) / 20);
        std::ofstream(Path("b"), std::ios::binary) << damaged;
        std::filesystem::remove(Path("c"));
        for (const std::string& arguments :
             {"check " + Path("b"), "export " + Path("b"), "recover " + Path("b") + " " + Path("c")}) {
            const auto [status, said] = Vexstore(arguments);
            EXPECT_TRUE(status == 0 || status == 1 || status == 3) << arguments << ": " << status << said;
        }
        if (std::filesystem::exists(Path("c"))) {
            EXPECT_EQ(Vexstore("check " + Path("c")).first, 0) << Vexstore("check " + Path("c")).second;
        }
    }
}
} // namespace
