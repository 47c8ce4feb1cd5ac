#pragma once

#include "VEXsqlite_export.h"
#include "sql_Connection.h"
#include "sql_Records.h"

#include <limits>
#include <string>

/// The records of one SQLite file: its schema, its checks and its statements. docs/storage.md shows the tables.
///
/// Ownership:  owns the connection.
/// Threads:    one thread of the process that opened it.
/// Complexity: one statement an operation, a few page reads each; Rows is linear in the rows.
/// Errors:     nex_TextException that names the file and says what is wrong with it.
class VEXSQLITE_API sql_RecordFile final : public sql_Records
{
public:
    static constexpr int FORMAT = 1; ///< of the files written here
    static constexpr std::uint32_t APPLICATION_ID = 0x56584F4D;
    static constexpr int BUSY_MILLISECONDS = 5000;

    enum class Mode
    {
        CREATE,
        READ_WRITE,
        READ_ONLY,
        SALVAGE ///< read-only, the schema alone is checked, and pages may lack at the end
    };

    sql_RecordFile(const std::string& file, Mode mode, int busyMilliseconds = BUSY_MILLISECONDS);

    ~sql_RecordFile() override;

    /// True when this version of SQLite (3051003 is 3.51.3) may write by a log ahead of the file, which lets readers go on
    /// while a large save is written: older ones can lose data when the log is reset under two connections.
    static constexpr bool IsLogSafe(int version) noexcept { return version >= 3051003; }

    sql_Connection& Connection() noexcept { return m_db; }

    /// The lowest format versions that may read and that may write the file.
    std::int64_t LowestReader() { return Version("reader"); }
    std::int64_t LowestWriter() { return Version("writer"); }
    /// "is truncated: 3 of 5 bytes are there", by what the file says of its length; empty when none lacks.
    std::string Truncation() const;
    /// A row of a record by itself, and a class by its row.
    std::optional<sql_Cell> FindRow(std::int64_t record, const sql_Key& key);
    std::optional<sql_Class> FindClass(std::int64_t row);

    /// What a row's checksum has to be: for those who read the tables by themselves.
    static std::int64_t SumOf(const sql_Record& record);
    static std::int64_t SumOf(std::int64_t record, const sql_Key& key, const sql_Cell& cell);
    static std::int64_t SumOfBlock(std::int64_t place, std::string_view bytes);
    static std::int64_t SumOf(const sql_Class& added);
    static std::int64_t SumOfRoot(const cow_String& name, std::int64_t record);
    /// The row number of a block; a record has BLOCKS_PER_RECORD of them.
    static constexpr std::int64_t BLOCKS_PER_RECORD = 1 << 20;
    static constexpr std::int64_t MAX_NUMBER = std::numeric_limits<std::int64_t>::max() / BLOCKS_PER_RECORD / 2;
    static constexpr std::int64_t BlockPlace(std::int64_t record, std::int64_t block) noexcept
    {
        return record * BLOCKS_PER_RECORD + block;
    }

    std::string Name() const override { return m_db.File(); }
    [[noreturn]] void FailDamaged(const std::string& how) const override { m_db.FailDamaged(how); }
    bool IsReadOnly() const noexcept override { return m_isReadOnly; }
    void CheckProcess() const override { m_db.CheckProcess(); }
    void BeginWrite() override { sql_Rows(m_begin).Run(); }
    void BeginRead() override { m_db.Execute("BEGIN"); }
    void EndRead() noexcept override;
    void Commit() override { sql_Rows(m_commit).Run(); }
    void Rollback() override;
    bool InTransaction() const noexcept override { return m_db.InTransaction(); }
    std::optional<sql_Record> FindRecord(std::int64_t id) override;
    void PutRecord(const sql_Record& record) override;
    void RemoveRecord(std::int64_t id) override;
    std::vector<Row> Rows(std::int64_t record) override;
    void PutRow(std::int64_t record, const sql_Key& key, const sql_Cell& cell) override;
    void RemoveRow(std::int64_t record, const sql_Key& key) override;
    void RemoveRows(std::int64_t record) override;
    bool ReadBlock(std::int64_t record, std::int64_t block, const BlockSink& sink) override;
    void PutBlock(std::int64_t record, std::int64_t block, std::string_view bytes) override;
    void RemoveBlocks(std::int64_t record) override;
    std::vector<std::pair<cow_String, std::int64_t>> Roots() override;
    std::optional<std::int64_t> FindRoot(const cow_String& name) override;
    void PutRoot(const cow_String& name, std::int64_t record) override;
    void RemoveRoot(const cow_String& name) override;
    std::vector<sql_Class> Classes() override;
    std::int64_t CountRecordsOf(std::int64_t classRow) override;
    void AddClass(const sql_Class& added) override;
    std::int64_t NextNumber() override;
    void SetNextNumber(std::int64_t number) override;

private:
    void MakeSchema();
    void CheckSchema(Mode mode);
    void CheckVersions(Mode mode);
    std::int64_t Setting(const char* name);
    std::int64_t Version(const char* name);
    std::int64_t Pragma(const char* text);
    [[noreturn]] void FailNotStore(const std::string& why) const;
    /// Why SQLite takes the file for none of its own, by what is at its start; empty when that tells nothing.
    std::string WhyUnreadable() const;
    std::vector<sql_Attribute> AttributesOf(std::int64_t classRow);
    void CheckHeldOnce(std::int64_t record, const std::vector<Row>& rows) const;

    bool m_isReadOnly;
    sql_Connection m_db;
    sql_Statement m_begin{m_db, "BEGIN IMMEDIATE"};
    sql_Statement m_commit{m_db, "COMMIT"};
    sql_Statement m_findRecord{
        m_db, "SELECT class, owner, identity, form, length, revision, checksum FROM record WHERE id = ?"};
    sql_Statement m_putRecord{m_db, "REPLACE INTO record VALUES (?, ?, ?, ?, ?, ?, ?, ?)"};
    sql_Statement m_removeRecord{m_db, "DELETE FROM record WHERE id = ?"};
    sql_Statement m_lastRecord{m_db, "SELECT ifnull(max(id), 0) FROM record"};
    sql_Statement m_rows{m_db, "SELECT key, kind, value, checksum FROM field WHERE record = ? ORDER BY key"};
    sql_Statement m_findRow{m_db, "SELECT kind, value, checksum FROM field WHERE record = ? AND key = ?"};
    sql_Statement m_putRow{m_db, "REPLACE INTO field VALUES (?, ?, ?, ?, ?)"};
    sql_Statement m_removeRow{m_db, "DELETE FROM field WHERE record = ? AND key = ?"};
    sql_Statement m_removeRows{m_db, "DELETE FROM field WHERE record = ?"};
    sql_Statement m_readBlock{m_db, "SELECT checksum, data FROM block WHERE id = ?"};
    sql_Statement m_putBlock{m_db, "REPLACE INTO block VALUES (?, ?, ?)"};
    sql_Statement m_removeBlocks{m_db, "DELETE FROM block WHERE id >= ? AND id < ?"};
    sql_Statement m_roots{m_db, "SELECT name, record, checksum FROM root ORDER BY name"};
    sql_Statement m_putRoot{m_db, "REPLACE INTO root VALUES (?, ?, ?)"};
    sql_Statement m_removeRoot{m_db, "DELETE FROM root WHERE name = ?"};
    sql_Statement m_classes{m_db, "SELECT id FROM class ORDER BY id"};
    sql_Statement m_findClass{m_db, "SELECT name, version, type, checksum FROM class WHERE id = ?"};
    sql_Statement m_countOf{m_db, "SELECT count(*) FROM record WHERE class = ?"};
    sql_Statement m_addClass{m_db, "INSERT INTO class VALUES (?, ?, ?, ?, ?)"};
    sql_Statement m_attributes{m_db,
                               "SELECT name, type, count, collection FROM attribute WHERE class = ? ORDER BY name"};
    sql_Statement m_addAttribute{m_db, "INSERT INTO attribute VALUES (?, ?, ?, ?, ?)"};
    sql_Statement m_setting{m_db, "SELECT value FROM setting WHERE name = ?"};
    sql_Statement m_putSetting{m_db, "REPLACE INTO setting VALUES (?, ?)"};
};
