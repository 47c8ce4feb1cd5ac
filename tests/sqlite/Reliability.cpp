#include "StampedModel.h"

#if !defined(_WIN32)
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace
{
/// The default file system of SQLite with faults: the n-th write, sync or read fails, or the disk is full after n bytes.
class Faults
{
public:
    Faults()
    {
        s_system = sqlite3_vfs_find(nullptr);
        s_faulty = *s_system;
        s_faulty.zName = "faulty";
        s_faulty.xOpen = Open;
        sqlite3_vfs_register(&s_faulty, 1);
    }
    ~Faults()
    {
        sqlite3_vfs_unregister(&s_faulty);
        failAt = 0;
        room = -1;
    }

    static inline int failAt = 0;                // counts down; 0 is never
    static inline int code = SQLITE_IOERR_WRITE; // of a write that fails
    static inline std::int64_t room = -1;        // bytes; -1 is no limit

private:
    static bool Strike() { return failAt > 0 && --failAt == 0; }
    static int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags)
    {
        const int result = s_system->xOpen(s_system, name, file, flags, outFlags);
        if (file->pMethods != nullptr) {
            s_real = *file->pMethods; // journals differ only in their locks
            sqlite3_io_methods& methods = s_methods[(flags & SQLITE_OPEN_MAIN_DB) != 0];
            methods = s_real;
            methods.xRead = [](sqlite3_file* of, void* to, int n, sqlite3_int64 at) {
                return Strike() ? SQLITE_IOERR_READ : s_real.xRead(of, to, n, at);
            };
            methods.xSync = [](sqlite3_file* of, int how) {
                return Strike() ? SQLITE_IOERR_FSYNC : s_real.xSync(of, how);
            };
            methods.xWrite = [](sqlite3_file* of, const void* from, int n, sqlite3_int64 at) {
                if (room >= 0 && (room -= n) < 0) {
                    room = 0;
                    return SQLITE_FULL;
                }
                return Strike() ? code : s_real.xWrite(of, from, n, at);
            };
            file->pMethods = &methods;
        }
        return result;
    }

    static inline sqlite3_vfs* s_system;
    static inline sqlite3_vfs s_faulty;
    static inline sqlite3_io_methods s_real;
    static inline sqlite3_io_methods s_methods[2]; // of journals, of stores
};

class Reliability : public StoreTest
{
protected:
    int StampOf(sql_Store& store) { return Model(cls_ReadVisitor(store.OpenRoot("model"))).Stamp(); }
    /// All that a reader gets: "whole", or the error.
    std::string Read()
    {
        return Said([&] {
            sql_Store store = sql_Store::OpenReadOnly(Path(), registrar);
            EXPECT_GE(StampOf(store), 0);
            store.UnknownClasses();
        });
    }
};

TEST_F(Reliability, Every_fault_of_the_file_system_is_an_error_and_leaves_the_last_commit)
{
    Model(1).Save(Create(), BOX);
    const std::string before = Bytes();
    for (const int code : {SQLITE_IOERR_WRITE, SQLITE_FULL}) {
        bool hasWorked = false;
        for (int n = 1; !hasWorked; ++n) {
            Put(before);
            const std::string said = Said([&] {
                const Faults faults;
                Faults::code = code;
                sql_Store store = Open();
                Model model(cls_ReadVisitor(store.OpenRoot("model")));
                Faults::failAt = n;
                model.Fill(2);
                model.Save(store, BOX);
                hasWorked = Faults::failAt > 0;
            });
            if (!hasWorked && said != "nothing") {
                EXPECT_EQ(said.find("'" + Path() + "' "), 0U) << said;
            }
            sql_Store store = Open(); // a journal that was left rolls back here
            const int stamp = StampOf(store);
            ASSERT_TRUE(stamp == 2 || (stamp == 1 && said != "nothing")) << "fault " << n << ": " << said;
            ASSERT_LT(n, 2000);
        }
    }
    Put(before);
    const Faults faults;
    sql_Store store = Open();
    Model model(cls_ReadVisitor(store.OpenRoot("model")));
    Faults::room = 20000;
    EXPECT_EQ(Said([&] {
                  model.Fill(3);
                  model.Save(store, BOX);
              }),
              "'" + Path() + "' cannot be written: database or disk is full");
    Faults::room = -1;
    EXPECT_EQ(Said([&] { model.Save(store, BOX); }).find("'" + Path() + "' was rolled back after a failure"), 0U);
    store.Rollback();
    EXPECT_EQ(StampOf(store), 1);
}

TEST_F(Reliability, Damage_is_reported_or_harmless)
{
    Model(1).Save(Create(), BOX);
    const std::string whole = Bytes();
    ASSERT_EQ(Read(), "nothing");
    std::mt19937 random(5);
    int reported = 0;
    for (int seed = 0; seed < 500; ++seed) {
        std::string damaged = whole;
        for (int flips = 1 + seed % 3; flips > 0; --flips) {
            damaged[random() % damaged.size()] ^= static_cast<char>(1 << random() % 8);
        }
        Put(damaged);
        const std::string said = Read();
        EXPECT_TRUE(said == "nothing" || said.find("'" + Path() + "' ") == 0) << said;
        reported += said != "nothing";
    }
    EXPECT_GT(reported, 100); // the others struck what no reader needs
    for (std::size_t length = 0; length < whole.size(); length += 1 + random() % 700) {
        Put(whole.substr(0, length));
        const std::string said = Read();
        EXPECT_TRUE(said.find("truncated") != said.npos || said.find("not a store") != said.npos) << length << said;
    }
    const std::pair<const char*, const char*> tampered[] = {
        {"DELETE FROM block WHERE id & 1048575 = 1", "is damaged: block 1 of record"},
        {"UPDATE block SET data = zeroblob(8192) WHERE id & 1048575 = 1", "does not match its checksum"},
        {"DELETE FROM field WHERE key = 'label'", "rows"},
        {"UPDATE field SET value = 'other' WHERE key = 'label'", "does not match its checksum"},
        {"DELETE FROM record WHERE owner != 0", "which is missing"},
        {"UPDATE record SET owner = 1 WHERE owner != 0", "does not match its checksum"},
        {"DELETE FROM class", "is missing"},
        {"UPDATE class SET version = 1", "does not match its checksum"},
        {"DROP TABLE field", "its table 'field' is not that of a store"},
        {"DELETE FROM setting", "it names no format version"},
        {"UPDATE setting SET value = 7 WHERE name = 'reader'",
         "is of a newer format: reading it takes format 7, this program has format 1"},
        {"PRAGMA application_id = 5", "is not a store: it is an SQLite file of another application (id 5)"},
    };
    for (const auto& [statement, error] : tampered) {
        Put(whole);
        Tamper(statement);
        EXPECT_NE(Read().find(error), std::string::npos) << statement << ": " << Read();
    }
    Put(whole);
    Tamper("UPDATE setting SET value = 3 WHERE name = 'next'"); // would be given to another record again
    EXPECT_EQ(Said([&] { Open().Begin(); }),
              "'" + Path() + "' is damaged: its setting 'next' is the number of a record");
    Put(whole);
    std::ofstream(Path() + "-journal") << "left by a process that was killed";
    EXPECT_EQ(Read(), "'" + Path() + "' holds a save that was cut short: open it to write, which takes that back");
    Open();
    EXPECT_EQ(Read(), "nothing");
    Put("a text, and no database");
    EXPECT_EQ(Read(), "'" + Path() + "' is not a store: it is a file of another format");
    Put("");
    EXPECT_EQ(Read(), "'" + Path() + "' is not a store: it is empty");
    const std::string odd =
        Said([&] { sql_Store::Create(":memory:", registrar); }); // not all systems allow such a name
    EXPECT_EQ(std::filesystem::remove(":memory:"), odd == "nothing");
    std::filesystem::remove(Path());
    EXPECT_EQ(Read(), "'" + Path() + "' cannot open: unable to open database file (No such file or directory)");
}

TEST_F(Reliability, A_newer_writer_leaves_the_file_readable_and_a_reader_cannot_write)
{
    Model(1).Save(Create(), BOX);
    Travel("arrays.vx");
    Tamper("UPDATE setting SET value = 2 WHERE name = 'writer'");
    EXPECT_EQ(Said([&] { Open(); }),
              "'" + Path() +
                  "' is of a newer format: writing it takes format 2, this program has format 1; it "
                  "can be opened read-only");
    EXPECT_EQ(Read(), "nothing");
    sql_Store store = sql_Store::OpenReadOnly(Path(), registrar);
    Model model(cls_ReadVisitor(store.OpenRoot("model")));
    model.array.Get(0) = 2; // stays in memory
    EXPECT_EQ(Said([&] { model.Save(store, BOX); }), "'" + Path() + "' was opened read-only");
    EXPECT_NE(Said([&] { Create(); }).find("is there already"), std::string::npos);
}

TEST_F(Reliability, Pages_in_the_log_of_another_program_are_read)
{
    Model(1).Save(Create(), BOX);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(Path().c_str(), &other), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(
                  other, "PRAGMA journal_mode = WAL; CREATE TABLE large(x); INSERT INTO large VALUES (zeroblob(99999))",
                  nullptr, nullptr, nullptr),
              SQLITE_OK);
    EXPECT_EQ(Read(), "nothing");
    sqlite3_close(other);
}

#if !defined(_WIN32) // needs fork
/// Runs `work` in a process of its own, which exits with its result.
template <class F> pid_t Fork(F work)
{
    const pid_t child = fork();
    if (child == 0) {
        _exit(work());
    }
    return child;
}

int Wait(pid_t child)
{
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

TEST_F(Reliability, A_killed_save_leaves_the_last_commit)
{
    constexpr int kills = 200;
    std::mt19937 random(11);
    Model(0).Save(Create(), BOX);
    int last = 0;
    for (int round = 0; round < kills; ++round) {
        int pipes[2];
        ASSERT_EQ(pipe(pipes), 0);
        const pid_t child = Fork([&] {
            sql_Store store = Open();
            Model model(cls_ReadVisitor(store.OpenRoot("model")));
            for (int stamp = last;; ++stamp) { // the first one tells that it goes on from here
                if (stamp > last) {
                    model.Fill(stamp);
                    model.Save(store, BOX);
                }
                if (write(pipes[1], &stamp, sizeof stamp) != sizeof stamp) {
                    return 1;
                }
            }
        });
        close(pipes[1]);
        int told = -1;
        for (int heard = round % 8 == 0 ? 2 : 1; heard > 0;
             --heard) { // on a slow machine, some saves are to succeed too
            ASSERT_EQ(read(pipes[0], &told, sizeof told), static_cast<ssize_t>(sizeof told));
        }
        usleep(static_cast<useconds_t>(random() % 12000));
        kill(child, SIGKILL);
        ASSERT_EQ(Wait(child), -SIGKILL);
        for (int stamp = 0; read(pipes[0], &stamp, sizeof stamp) == sizeof stamp;) {
            told = stamp;
        }
        close(pipes[0]);
        last = [&] {
            sql_Store store = Open();
            return StampOf(store);
        }();
        ASSERT_EQ(Check(), "sound") << "round " << round;
        ASSERT_TRUE(last == told || last == told + 1) << "round " << round << ": " << last << " after " << told;
    }
    EXPECT_GT(last, 0);
}

TEST_F(Reliability, One_process_writes_others_read_and_a_fork_is_refused)
{
    sql_Store store = Create();
    Model model(1);
    model.Save(store, BOX);
    model.part.label = "0";
    store.WriteRoot("other", [&](const cls_WriteVisitor& visitor) { model.part.DBWrite(visitor); });
    const pid_t other = Fork([&] {
        sql_Store second = sql_Store::Open(Path(), registrar, 50);
        const bool isRefused = Said([&] { second.Begin(); }) ==
                               "'" + Path() + "' is in use: waited 50 ms for another process or connection";
        return isRefused && StampOf(second) == 1 && second.Roots().size() == 1 ? 0 : 1;
    });
    EXPECT_EQ(Wait(other), 0);
    const pid_t forked = Fork([&] {
        const bool isRefused =
            Said([&] { store.Commit(); }).find("was opened by another process, before a fork") != std::string::npos;
        return isRefused && Said([&] { store.Roots(); }) != "nothing" ? 0 : 1;
    });
    EXPECT_EQ(Wait(forked), 0);
    store.Commit();
    EXPECT_EQ(store.Roots().size(), 2U);
}
#endif
} // namespace
