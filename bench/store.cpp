// Ten million doubles on disk: appended, read in order, and read at random places, through a persistent array over the
// engine, by plain SQLite statements on the same tables, by HDF5 in chunks as large as the engine's blocks, and by plain
// file reads and writes.

#include "cls_ArrayPrim.h"
#include "cls_ClassRegistrar.h"
#include "cls_FieldHandle.h"
#include "cls_MementoRead.h"
#include "cls_Module.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "sql_Store.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <hdf5.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{
constexpr int COUNT = 10'000'000;
constexpr int BLOCK = 2048;
constexpr int AT_ONCE = 32; // blocks of an AppendBlock
constexpr int PLACES = 100'000;
const std::string FOLDER = std::filesystem::temp_directory_path() / ("bench_store_" + std::to_string(getpid()));

std::string Fresh(const char* name)
{
    std::filesystem::create_directories(FOLDER);
    const std::string path = FOLDER + "/" + name;
    std::filesystem::remove(path);
    return path;
}

const std::vector<int>& Places()
{
    static const std::vector<int> places = [] {
        std::mt19937 random(1);
        std::vector<int> made(PLACES);
        for (int& place : made) {
            place = static_cast<int>(random() % COUNT);
        }
        return made;
    }();
    return places;
}

/// Fills `block` with what the elements from `first` on are; how many there are.
int Fill(int first, double* block)
{
    const int count = std::min(BLOCK, COUNT - first);
    for (int i = 0; i < count; ++i) {
        block[i] = first + i;
    }
    return count;
}

void Check(benchmark::State& state, bool isRight)
{
    if (!isRight) {
        state.SkipWithError("wrong result");
    }
}

class Kernel
{
public:
    static void Write()
    {
        std::vector<double> values(AT_ONCE * BLOCK);
        Write([&values](cls_ArrayPrim<double>& array) {
            for (int first = 0; first < COUNT; first += static_cast<int>(values.size())) {
                const int count = std::min(static_cast<int>(values.size()), COUNT - first);
                for (int at = 0; at < count; at += BLOCK) {
                    Fill(first + at, values.data() + at);
                }
                array.AppendBlock(values.data(), count);
            }
        });
    }
    template <class F> static void Write(F append)
    {
        sql_Store store = sql_Store::Create(Fresh("kernel"), Registrar());
        cls_ArrayPrim<double> array;
        const cls_Uid box = cls_Uid::AllocateUid();
        store.WriteRoot("box", [&](const cls_WriteVisitor& visitor) {
            if (visitor.StartWrite(cls_ArrayPrim<int>::TypeId(), box) != 0) {
                array.DBWrite(cls_WriteVisitor(visitor, cls_FieldHandle("array"), nullptr));
            }
        });
        append(array);
        store.Commit();
    }
    Kernel() : m_store(sql_Store::OpenReadOnly(FOLDER + "/kernel", Registrar()))
    {
        const std::unique_ptr<cls_MementoRead> record(m_store.OpenRoot("box"));
        m_array =
            std::make_unique<cls_ArrayPrim<double>>(cls_ReadVisitor(record->MakeFieldReader(cls_FieldHandle("array"))));
    }
    [[gnu::noinline]] double Sum()
    {
        const cls_ArrayPrim<double>& array = *m_array;
        double sum = 0;
        for (int i = 0; i < COUNT; ++i) {
            sum += array.ConstGet(i);
        }
        return sum;
    }
    double Get(int place) { return m_array->ConstGet(place); }

private:
    static const cls_ClassRegistrar& Registrar()
    {
        static int count = 0;
        static const cls_ClassRegistrar registrar;
        cls_initialize(count);
        return registrar;
    }

    sql_Store m_store;
    std::unique_ptr<cls_ArrayPrim<double>> m_array;
};

struct KernelOneByOne
{
    static void Write() { Kernel::Write(Append); }
    [[gnu::noinline]] static void Append(cls_ArrayPrim<double>& array)
    {
        for (int i = 0; i < COUNT; ++i) {
            array.Append(i);
        }
    }
};

struct AsItComes
{
    static constexpr const char* FILE = "sqlite";
    static constexpr const char* SETTINGS = "PRAGMA synchronous = FULL;";
};
struct AsByEngine
{
    static constexpr const char* FILE = "sqlite_by_engine";
    static constexpr const char* SETTINGS =
        "PRAGMA page_size = 16384; PRAGMA synchronous = FULL; PRAGMA cache_size = -16384;";
};

template <class Setting> class PlainSqlite
{
public:
    static void Write()
    {
        PlainSqlite file(
            Fresh(Setting::FILE), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
            "CREATE TABLE block(id INTEGER PRIMARY KEY, checksum INTEGER NOT NULL, data BLOB NOT NULL); BEGIN",
            "INSERT INTO block VALUES (?, 1234567890123456789, ?)");
        double block[BLOCK];
        for (int first = 0; first < COUNT; first += BLOCK) {
            const int count = Fill(first, block);
            sqlite3_bind_int64(file.m_statement, 1, first / BLOCK);
            sqlite3_bind_blob(file.m_statement, 2, block, count * static_cast<int>(sizeof(double)), SQLITE_STATIC);
            sqlite3_step(file.m_statement);
            sqlite3_reset(file.m_statement);
        }
        sqlite3_exec(file.m_db, "COMMIT", nullptr, nullptr, nullptr);
    }
    PlainSqlite()
        : PlainSqlite(FOLDER + "/" + Setting::FILE, SQLITE_OPEN_READONLY, "", "SELECT data FROM block WHERE id = ?")
    {}
    ~PlainSqlite()
    {
        sqlite3_finalize(m_statement);
        sqlite3_close(m_db);
    }
    [[gnu::noinline]] double Sum()
    {
        double sum = 0;
        for (int first = 0; first < COUNT; first += BLOCK) {
            Load(first / BLOCK);
            for (int i = 0; i < std::min(BLOCK, COUNT - first); ++i) {
                sum += m_block[i];
            }
        }
        return sum;
    }
    double Get(int place)
    {
        Load(place / BLOCK);
        return m_block[place % BLOCK];
    }

private:
    PlainSqlite(const std::string& path, int flags, const char* start, const char* statement)
    {
        sqlite3_open_v2(path.c_str(), &m_db, flags, nullptr);
        sqlite3_exec(m_db, Setting::SETTINGS, nullptr, nullptr, nullptr);
        sqlite3_exec(m_db, start, nullptr, nullptr, nullptr);
        sqlite3_prepare_v2(m_db, statement, -1, &m_statement, nullptr);
    }
    void Load(int block)
    {
        sqlite3_bind_int64(m_statement, 1, block);
        if (sqlite3_step(m_statement) == SQLITE_ROW) {
            const int bytes = sqlite3_column_bytes(m_statement, 0);
            std::memcpy(m_block, sqlite3_column_blob(m_statement, 0), static_cast<std::size_t>(bytes));
        }
        sqlite3_reset(m_statement);
    }

    sqlite3* m_db = nullptr;
    sqlite3_stmt* m_statement = nullptr;
    double m_block[BLOCK];
};

using Sqlite = PlainSqlite<AsItComes>;
using SqliteByEngine = PlainSqlite<AsByEngine>;

class Hdf5
{
public:
    static void Write()
    {
        const hsize_t size = COUNT;
        const hsize_t chunk = BLOCK;
        const hid_t file = H5Fcreate(Fresh("hdf5").c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
        const hid_t space = H5Screate_simple(1, &size, nullptr);
        const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
        H5Pset_chunk(properties, 1, &chunk);
        const hid_t data = H5Dcreate2(file, "array", H5T_NATIVE_DOUBLE, space, H5P_DEFAULT, properties, H5P_DEFAULT);
        double block[BLOCK];
        for (int first = 0; first < COUNT; first += BLOCK) {
            Transfer(data, space, first, Fill(first, block), block, /*isWrite=*/true);
        }
        H5Fflush(file, H5F_SCOPE_GLOBAL);
        H5Pclose(properties);
        H5Dclose(data);
        H5Sclose(space);
        H5Fclose(file);
        sync(); // as durable as the others
    }
    Hdf5()
        : m_file(H5Fopen((FOLDER + "/hdf5").c_str(), H5F_ACC_RDONLY, H5P_DEFAULT)),
          m_data(H5Dopen2(m_file, "array", H5P_DEFAULT)), m_space(H5Dget_space(m_data))
    {}
    ~Hdf5()
    {
        H5Sclose(m_space);
        H5Dclose(m_data);
        H5Fclose(m_file);
    }
    [[gnu::noinline]] double Sum()
    {
        double sum = 0;
        for (int first = 0; first < COUNT; first += BLOCK) {
            const int count = std::min(BLOCK, COUNT - first);
            Transfer(m_data, m_space, first, count, m_block, /*isWrite=*/false);
            for (int i = 0; i < count; ++i) {
                sum += m_block[i];
            }
        }
        return sum;
    }
    double Get(int place)
    {
        const int first = place / BLOCK * BLOCK;
        Transfer(m_data, m_space, first, std::min(BLOCK, COUNT - first), m_block, /*isWrite=*/false);
        return m_block[place - first];
    }

private:
    static void Transfer(hid_t data, hid_t space, int first, int count, double* block, bool isWrite)
    {
        const hsize_t start = static_cast<hsize_t>(first);
        const hsize_t length = static_cast<hsize_t>(count);
        const hid_t memory = H5Screate_simple(1, &length, nullptr);
        H5Sselect_hyperslab(space, H5S_SELECT_SET, &start, nullptr, &length, nullptr);
        isWrite ? H5Dwrite(data, H5T_NATIVE_DOUBLE, memory, space, H5P_DEFAULT, block)
                : H5Dread(data, H5T_NATIVE_DOUBLE, memory, space, H5P_DEFAULT, block);
        H5Sclose(memory);
    }

    hid_t m_file;
    hid_t m_data;
    hid_t m_space;
    double m_block[BLOCK];
};

class Plain
{
public:
    static void Write()
    {
        const int file = open(Fresh("plain").c_str(), O_RDWR | O_CREAT, 0666);
        double block[BLOCK];
        for (int first = 0; first < COUNT; first += BLOCK) {
            const auto bytes = static_cast<std::size_t>(Fill(first, block)) * sizeof(double);
            if (pwrite(file, block, bytes, static_cast<off_t>(first) * 8) != static_cast<ssize_t>(bytes)) {
                std::abort();
            }
        }
        fsync(file);
        close(file);
    }
    Plain() : m_file(open((FOLDER + "/plain").c_str(), O_RDONLY)) {}
    ~Plain() { close(m_file); }
    [[gnu::noinline]] double Sum()
    {
        double sum = 0;
        for (int first = 0; first < COUNT; first += BLOCK) {
            Load(first);
            for (int i = 0; i < std::min(BLOCK, COUNT - first); ++i) {
                sum += m_block[i];
            }
        }
        return sum;
    }
    double Get(int place)
    {
        Load(place / BLOCK * BLOCK);
        return m_block[place % BLOCK];
    }

private:
    void Load(int first)
    {
        if (pread(m_file, m_block, sizeof m_block, static_cast<off_t>(first) * 8) <= 0) {
            std::abort();
        }
    }

    int m_file;
    double m_block[BLOCK];
};

template <class Store> void store_write(benchmark::State& state)
{
    for (auto step : state) {
        Store::Write();
    }
}

template <class Store> void store_read(benchmark::State& state)
{
    Store::Write();
    for (auto step : state) {
        Check(state, Store().Sum() == 0.5 * COUNT * (COUNT - 1.0));
    }
}

template <class Store> void store_random(benchmark::State& state)
{
    Store::Write();
    Store store;
    for (auto step : state) {
        for (const int place : Places()) {
            Check(state, store.Get(place) == place);
        }
    }
}

#define STORES(NAME)                                                                                                   \
    BENCHMARK_TEMPLATE(NAME, Kernel)->Unit(benchmark::kMillisecond)->UseRealTime();                                    \
    BENCHMARK_TEMPLATE(NAME, Sqlite)->Unit(benchmark::kMillisecond)->UseRealTime();                                    \
    BENCHMARK_TEMPLATE(NAME, SqliteByEngine)->Unit(benchmark::kMillisecond)->UseRealTime();                            \
    BENCHMARK_TEMPLATE(NAME, Hdf5)->Unit(benchmark::kMillisecond)->UseRealTime();                                      \
    BENCHMARK_TEMPLATE(NAME, Plain)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_TEMPLATE(store_write, KernelOneByOne)->Unit(benchmark::kMillisecond)->UseRealTime();
STORES(store_write)
STORES(store_read)
STORES(store_random)
#undef STORES
} // namespace
