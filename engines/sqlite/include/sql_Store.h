#pragma once

#include "VEXsqlite_export.h"
#include "cow_String.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class cls_ClassRegistrar;
class cls_MementoRead;
class cls_WriteVisitor;
class sql_Records;
class sql_Session;

/// A model on disk: one SQLite file with objects under names, its roots, and what they hold.
///
/// Ownership:  owns the open file, not the registrar, which outlives it. Agents of arrays and collections may outlive the
///             store; they refuse to work after it.
/// Threads:    one thread of the process that opened it; in a process forked from that one everything throws.
/// Complexity: a save writes every object of the root again, and of an array only the blocks that changed.
/// Errors:     nex_TextException that names the file and says whether it is missing, in use, damaged, truncated, of a newer
///             format or no store. What fails between Begin and Commit leaves the file as it was last committed. A
///             rollback brings arrays that were stored for the first time back into memory; others that had moved changed
///             blocks to the file are to be read from it again.
/// Example:    sql_Store store = sql_Store::Create("beam.vx", registrar);
///             store.WriteRoot("model", [&](const cls_WriteVisitor& visitor) { model.DBWrite(visitor); });
///             store.Commit();
///             auto* model = static_cast<Model*>(store.ReadRoot("model"));
/// Avoid for:  several writers at once: the second waits for the first to commit.
class VEXSQLITE_API sql_Store
{
public:
    using ReadFn = std::function<void()>;
    using WriteFn = std::function<void(const cls_WriteVisitor& visitor)>;

    static constexpr int BUSY_MILLISECONDS = 5000;
    static constexpr std::size_t CACHE_BYTES = std::size_t{96} << 20;

    /// Makes a new store; the file must not be there, or be empty.
    static sql_Store Create(const std::string& file, const cls_ClassRegistrar& registrar,
                            int busyMilliseconds = BUSY_MILLISECONDS);
    /// Opens a store to read and write; where another process writes, waits that long at most.
    static sql_Store Open(const std::string& file, const cls_ClassRegistrar& registrar,
                          int busyMilliseconds = BUSY_MILLISECONDS);
    static sql_Store OpenReadOnly(const std::string& file, const cls_ClassRegistrar& registrar,
                                  int busyMilliseconds = BUSY_MILLISECONDS);
    /// On any database that keeps records.
    sql_Store(std::unique_ptr<sql_Records> records, const cls_ClassRegistrar& registrar);
    sql_Store(sql_Store&& other) noexcept;
    sql_Store& operator=(sql_Store&& other) noexcept;
    /// Rolls back what was not committed.
    ~sql_Store();

    /// Sets how much memory may hold blocks of arrays that are read in no order, for all arrays of the store together;
    /// CACHE_BYTES at first. A walk through an array, block by block, holds there the few blocks that come next.
    void SetCacheBytes(std::size_t bytes);

    /// Starts a transaction. Writing starts one by itself.
    void Begin();
    /// Writes the arrays that have changes, and makes all that was written since Begin durable, at once.
    void Commit();
    void Rollback();
    bool InTransaction() const noexcept;

    /// Saves an object under a name, in place of the one that has it: `write` hands the visitor to the object's DBWrite.
    /// A failure rolls the transaction back.
    void WriteRoot(const cow_String& name, const WriteFn& write);
    /// Calls `read`, for which the store is as it was last committed from beginning to end; within a transaction as the
    /// transaction made it.
    void Read(const ReadFn& read);
    /// Builds the object by the constructor of the class version it was written with; the caller owns it.
    void* ReadRoot(const cow_String& name);
    /// The record of a root, for the caller to build the object from; the caller owns the memento.
    cls_MementoRead* OpenRoot(const cow_String& name);
    /// The class of a root in this program, 0 when the program does not know it.
    std::uint32_t RootClass(const cow_String& name);
    /// True when there was one.
    bool RemoveRoot(const cow_String& name);
    /// The names, in order.
    std::vector<cow_String> Roots();

    /// The classes of stored objects that this program cannot read, "Part version 2". The objects are kept as they are.
    std::vector<std::string> UnknownClasses();

private:
    std::shared_ptr<sql_Session> m_session;
};
