// A hundred thousand small objects, each with an identity, a text and a number: saved and loaded through the engine, and by
// plain SQLite statements that put the same rows into the same tables and take them out again.

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
#include "sql_Store.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace
{
constexpr int COUNT = 100'000;
constexpr std::uint32_t LIST = 5;
const std::string FOLDER = std::filesystem::temp_directory_path() / ("bench_objects_" + std::to_string(getpid()));

std::string Fresh(const char* name)
{
    std::filesystem::create_directories(FOLDER);
    const std::string path = FOLDER + "/" + name;
    std::filesystem::remove(path);
    return path;
}

class Node
{
public:
    static constexpr std::uint32_t ID = (77U << 16) + 1;

    explicit Node(int number) : m_label(("node " + std::to_string(number)).c_str()), m_weight(number) {}
    explicit Node(const cls_ReadVisitor& visitor)
        : m_uid(visitor.GetUid()), m_label(visitor.Read(Label(), "")),
          m_weight(visitor.Memento()->ReadDouble(Weight(), 0))
    {}
    static void Register(cls_ClassRegistrar& registrar)
    {
        registrar.CreateClassMD("Node", ID, 1, nullptr, 1)
            .AddAttribute(Label(), cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE)
            .AddAttribute(Weight(), cls_ATTRIBUTE_REAL, 1, cls_COLLECTION_NONE);
    }
    void DBWrite(const cls_WriteVisitor& visitor) const
    {
        if (visitor.StartWrite(ID, m_uid) != 0) {
            visitor.Memento()->WriteString(Label(), m_label);
            visitor.Memento()->WriteDouble(Weight(), m_weight);
        }
    }
    double Mass() const noexcept { return m_weight; }

private:
    static const cls_FieldHandle& Label()
    {
        static const cls_FieldHandle field("label");
        return field;
    }
    static const cls_FieldHandle& Weight()
    {
        static const cls_FieldHandle field("weight");
        return field;
    }

    cls_Uid m_uid = cls_Uid::AllocateUid();
    cow_String m_label;
    double m_weight;
};

struct Net
{
    static constexpr std::uint32_t ID = Node::ID + 1;

    Net() = default;
    explicit Net(const cls_ReadVisitor& visitor) : uid(visitor.GetUid())
    {
        const std::unique_ptr<cls_ReadListObj> list(visitor.Memento()->MakeObjListReader(LIST));
        while (list->Next()) {
            nodes.emplace_back(cls_ReadVisitor(list->MakeReader()));
        }
    }
    static void* Ctor(cls_ReadVisitor& visitor) { return new Net(visitor); }
    void DBWrite(const cls_WriteVisitor& visitor) const
    {
        if (visitor.StartWrite(ID, uid) != 0) {
            const std::unique_ptr<cls_WriteListObj> list(visitor.Memento()->MakeObjListWriter(LIST));
            for (const Node& node : nodes) {
                node.DBWrite(cls_WriteVisitor(cls_WriteRequestListObj(list.get())));
            }
        }
    }

    cls_Uid uid = cls_Uid::AllocateUid();
    std::vector<Node> nodes;
};

const cls_ClassRegistrar& Registrar()
{
    static int count = 0;
    static const std::unique_ptr<cls_ClassRegistrar> registrar = [] {
        cls_initialize(count);
        auto made = std::make_unique<cls_ClassRegistrar>();
        Node::Register(*made);
        made->CreateClassMD("Net", Net::ID, 1, Net::Ctor, 1);
        return made;
    }();
    return *registrar;
}

struct Kernel
{
    static void Save()
    {
        Net net;
        for (int i = 0; i < COUNT; ++i) {
            net.nodes.emplace_back(i);
        }
        sql_Store store = sql_Store::Create(Fresh("kernel"), Registrar());
        store.WriteRoot("net", [&net](const cls_WriteVisitor& visitor) { net.DBWrite(visitor); });
        store.Commit();
    }
    static double Load()
    {
        sql_Store store = sql_Store::OpenReadOnly(FOLDER + "/kernel", Registrar());
        const std::unique_ptr<Net> net(static_cast<Net*>(store.ReadRoot("net")));
        double sum = 0;
        for (const Node& node : net->nodes) {
            sum += node.Mass();
        }
        return sum;
    }
};

/// Statements on one file, each prepared once.
class Statements
{
public:
    Statements(const std::string& path, const char* start)
    {
        sqlite3_open(path.c_str(), &m_db);
        Run(start);
    }
    ~Statements()
    {
        for (sqlite3_stmt* statement : m_prepared) {
            sqlite3_finalize(statement);
        }
        sqlite3_close(m_db);
    }
    void Run(const char* text) { sqlite3_exec(m_db, text, nullptr, nullptr, nullptr); }
    sqlite3_stmt* Prepare(const char* text)
    {
        m_prepared.emplace_back();
        sqlite3_prepare_v2(m_db, text, -1, &m_prepared.back(), nullptr);
        return m_prepared.back();
    }
    static void Bind(sqlite3_stmt* statement, int at, std::int64_t number)
    {
        sqlite3_bind_int64(statement, at, number);
    }
    static void Bind(sqlite3_stmt* statement, int at, int number) { sqlite3_bind_int64(statement, at, number); }
    static void Bind(sqlite3_stmt* statement, int at, double number) { sqlite3_bind_double(statement, at, number); }
    static void Bind(sqlite3_stmt* statement, int at, const std::string& text)
    {
        sqlite3_bind_text(statement, at, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    }
    template <class... Values> static void Put(sqlite3_stmt* statement, const Values&... values)
    {
        int at = 0;
        (Bind(statement, ++at, values), ...);
        sqlite3_step(statement);
        sqlite3_reset(statement);
    }

private:
    sqlite3* m_db = nullptr;
    std::vector<sqlite3_stmt*> m_prepared;
};

struct Sqlite
{
    static void Save()
    {
        std::vector<std::pair<std::string, double>> nodes;
        for (int i = 0; i < COUNT; ++i) {
            nodes.emplace_back("node " + std::to_string(i), i);
        }
        Statements file(Fresh("sqlite"),
                        "PRAGMA page_size = 16384; PRAGMA synchronous = FULL; PRAGMA cache_size = -16384;"
                        "CREATE TABLE record(id INTEGER PRIMARY KEY, class INTEGER NOT NULL, owner INTEGER NOT NULL, "
                        "identity INTEGER NOT NULL, form INTEGER NOT NULL, length INTEGER NOT NULL, "
                        "revision INTEGER NOT NULL, checksum INTEGER NOT NULL);"
                        "CREATE TABLE field(record INTEGER NOT NULL, key NOT NULL, kind INTEGER NOT NULL, "
                        "value NOT NULL, checksum INTEGER NOT NULL, PRIMARY KEY(record, key)) WITHOUT ROWID; BEGIN");
        sqlite3_stmt* const record = file.Prepare("INSERT INTO record VALUES (?, 1, 1, ?, 0, 2, 1, 1234567890)");
        sqlite3_stmt* const field = file.Prepare("INSERT INTO field VALUES (?, ?, ?, ?, 1234567890)");
        const std::string label("label");
        const std::string weight("weight");
        for (int i = 0; i < COUNT; ++i) {
            const std::int64_t id = 2 * i + 3;
            Statements::Put(field, 2, i, 7, id);
            Statements::Put(field, id, label, 5, nodes[static_cast<std::size_t>(i)].first);
            Statements::Put(field, id, weight, 2, nodes[static_cast<std::size_t>(i)].second);
            Statements::Put(record, id, id - 1);
        }
        file.Run("COMMIT");
    }
    static double Load()
    {
        Statements file(FOLDER + "/sqlite", "PRAGMA cache_size = -16384; BEGIN");
        sqlite3_stmt* const list = file.Prepare("SELECT value FROM field WHERE record = 2 ORDER BY key");
        sqlite3_stmt* const record = file.Prepare("SELECT class, identity FROM record WHERE id = ?");
        sqlite3_stmt* const field = file.Prepare("SELECT value FROM field WHERE record = ? ORDER BY key");
        std::vector<std::pair<std::string, double>> nodes;
        double sum = 0;
        while (sqlite3_step(list) == SQLITE_ROW) {
            const std::int64_t id = sqlite3_column_int64(list, 0);
            Statements::Put(record, id);
            Statements::Bind(field, 1, id);
            sqlite3_step(field);
            std::string text(reinterpret_cast<const char*>(sqlite3_column_text(field, 0)));
            sqlite3_step(field);
            nodes.emplace_back(std::move(text), sqlite3_column_double(field, 0));
            sqlite3_reset(field);
            sum += nodes.back().second;
        }
        return sum;
    }
};

template <class Store> void objects_save(benchmark::State& state)
{
    for (auto step : state) {
        Store::Save();
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}

template <class Store> void objects_load(benchmark::State& state)
{
    Store::Save();
    for (auto step : state) {
        if (Store::Load() != 0.5 * COUNT * (COUNT - 1.0)) {
            state.SkipWithError("wrong result");
        }
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}

BENCHMARK_TEMPLATE(objects_save, Kernel)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_TEMPLATE(objects_save, Sqlite)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_TEMPLATE(objects_load, Kernel)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_TEMPLATE(objects_load, Sqlite)->Unit(benchmark::kMillisecond)->UseRealTime();
} // namespace
