// A store whose file was changed anywhere: what is read is what was saved, or an error that names the file.

#include "fuzz.h"

#include "cls_ArrayPrim.h"
#include "cls_ClassRegistrar.h"
#include "cls_FieldHandle.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_Module.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "nex_TextException.h"
#include "sql_Store.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <unistd.h>

namespace
{

/// A class with a text, a number and an array of several blocks.
struct Part
{
    static constexpr std::uint32_t ID = (77U << 16) + 1;
    static constexpr int LENGTH = 5000;

    Part() : label("a label that is too long to be kept in place")
    {
        for (int i = 0; i < LENGTH; ++i) {
            array.Append(i);
        }
    }
    explicit Part(const cls_ReadVisitor& visitor)
        : uid(visitor.GetUid()), label(visitor.Read(cls_FieldHandle("label"), "none")),
          weight(visitor.Memento()->ReadDouble(cls_FieldHandle("weight"), 1)),
          array(cls_ReadVisitor(visitor, cls_FieldHandle("array")))
    {}
    static void* Ctor(cls_ReadVisitor& visitor) { return new Part(visitor); }
    void DBWrite(const cls_WriteVisitor& visitor) const
    {
        if (visitor.StartWrite(ID, uid) != 0) {
            visitor.Memento()->WriteString(cls_FieldHandle("label"), label);
            visitor.Memento()->WriteDouble(cls_FieldHandle("weight"), weight);
            array.DBWrite(cls_WriteVisitor(visitor, cls_FieldHandle("array"), nullptr));
        }
    }

    cls_Uid uid = cls_Uid::AllocateUid();
    cow_String label;
    double weight = 2.5;
    cls_ArrayPrim<int> array;
};

/// The registry, a file to open, and what a good one holds.
class Setting
{
public:
    Setting()
    {
        int count = 0;
        cls_initialize(count);
        const auto integers = cls_CollectionTypeFix(cls_COLLECTION_ARRAY, static_cast<int*>(nullptr));
        registrar.CreateClassMD("Part", Part::ID, 1, Part::Ctor, 1)
            .AddAttribute(cls_FieldHandle("label"), cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE)
            .AddAttribute(cls_FieldHandle("weight"), cls_ATTRIBUTE_REAL, 1, cls_COLLECTION_NONE)
            .AddAttribute(cls_FieldHandle("array"), cls_ATTRIBUTE_INT, 1, integers);
        std::filesystem::remove(file);
        {
            sql_Store store = sql_Store::Create(file, registrar);
            store.WriteRoot("part", [](const cls_WriteVisitor& visitor) { Part().DBWrite(visitor); });
            store.Commit();
        }
        std::ifstream in(file, std::ios::binary);
        saved.assign(std::istreambuf_iterator<char>(in), {});
    }
    ~Setting() { std::filesystem::remove(file); }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

    cls_ClassRegistrar registrar;
    const std::string file =
        (std::filesystem::temp_directory_path() / ("fuzz-" + std::to_string(getpid()) + ".vx")).string();
    std::string saved;
};

void ReadAll(sql_Store& store)
{
    for (const cow_String& name : store.Roots()) {
        const std::unique_ptr<Part> part(
            static_cast<Part*>(store.RootClass(name) == Part::ID ? store.ReadRoot(name) : nullptr));
        for (int i = 0; part && i < part->array.Size(); ++i) {
            Require(part->array.ConstGet(i) == i); // the blocks have checksums
        }
    }
    store.UnknownClasses();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Setting setting;
    FuzzInput input(data, size);
    std::string bytes = setting.saved;
    const auto cut = input.Take<std::uint16_t>();
    if (cut % 4 == 0) {
        bytes.resize(bytes.size() * cut / 65536);
    }
    // Each change is a place and a byte; places near the front, where the file describes itself, come up more often.
    while (!input.IsEmpty() && !bytes.empty()) {
        const auto place = input.Take<std::uint32_t>();
        bytes[place % (place % 2 == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 512))] =
            static_cast<char>(input.Take<std::uint8_t>());
    }
    std::ofstream(setting.file, std::ios::binary | std::ios::trunc) << bytes;
    try {
        sql_Store store = sql_Store::OpenReadOnly(setting.file, setting.registrar, 0);
        ReadAll(store);
    } catch (const nex_TextException& error) {
        Require(std::string_view(error.what()).find(setting.file) != std::string_view::npos);
    }
    return 0;
}
