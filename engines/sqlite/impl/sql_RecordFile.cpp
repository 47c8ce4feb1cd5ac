#include "sql_RecordFile.h"

#include "nex_TextException.h"
#include "sql_Schema_detail.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>
#include <sqlite3.h>
#include <xxhash.h>
#if defined(SQL_HAS_XXH_DISPATCH)
#include <xxh_x86dispatch.h> // the same sums, by the widest registers that the processor has
#endif

namespace
{
constexpr const char* SOURCE = "engines/sqlite/impl/sql_RecordFile";

[[noreturn]] void Throw(const std::string& text, int line)
{
    nex_TextException(text.c_str()).Throw(SOURCE, line);
}

sql_Connection::Mode ConnectionMode(const std::string& file, sql_RecordFile::Mode mode)
{
    switch (mode) {
    case sql_RecordFile::Mode::CREATE: {
        std::error_code error;
        if (std::filesystem::file_size(file, error) != 0 && !error) {
            Throw("'" + file + "' cannot be created: a file of that name is there already", __LINE__);
        }
        return sql_Connection::Mode::CREATE;
    }
    case sql_RecordFile::Mode::READ_WRITE:
        return sql_Connection::Mode::READ_WRITE;
    case sql_RecordFile::Mode::READ_ONLY:
    case sql_RecordFile::Mode::SALVAGE:
        return sql_Connection::Mode::READ_ONLY;
    }
    return sql_Connection::Mode::READ_ONLY;
}

/// What an SQLite file begins with, zeros where it is shorter, and how long it is.
struct Head
{
    std::int64_t Number(std::size_t place, std::size_t width) const
    {
        std::int64_t number = 0;
        for (std::size_t i = place; i < place + width; ++i) {
            number = number << 8 | bytes[i];
        }
        return number;
    }

    std::array<unsigned char, 100> bytes{};
    std::int64_t size = 0;
};

/// Through SQLite's own descriptor: to close another one would drop this process's locks on the file.
Head HeadOf(const sql_Connection& connection)
{
    Head head;
    sqlite3_file* file = nullptr;
    sqlite3_file_control(connection.Handle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (file != nullptr && file->pMethods != nullptr) {
        sqlite3_int64 size = 0;
        file->pMethods->xFileSize(file, &size);
        file->pMethods->xRead(file, head.bytes.data(), static_cast<int>(head.bytes.size()), 0);
        head.size = size;
    }
    return head;
}

/// A running checksum: each step takes the one before as its seed.
class Sum
{
public:
    Sum& Add(std::int64_t number) { return Add(&number, sizeof number); }
    Sum& Add(std::string_view bytes)
    {
        return Add(bytes.data(), bytes.size()).Add(static_cast<std::int64_t>(bytes.size()));
    }
    Sum& Add(const sql_Key& key) { return key.IsNumber() ? Add(key.Number()) : Add(key.Text().view()); }
    Sum& Add(const sql_Cell& cell)
    {
        Add(static_cast<std::int64_t>(cell.kind));
        if (const auto* number = std::get_if<std::int64_t>(&cell.data)) {
            return Add(*number);
        }
        if (const auto* real = std::get_if<double>(&cell.data)) {
            return Add(real, sizeof *real);
        }
        return Add(std::get<cow_String>(cell.data).view());
    }
    /// 32 bits guard a row: they take half the room of 64 in it.
    std::int64_t Short() const noexcept { return static_cast<std::int32_t>(m_sum); }
    std::int64_t Long() const noexcept { return static_cast<std::int64_t>(m_sum); }

private:
    Sum& Add(const void* bytes, std::size_t size)
    {
        m_sum = XXH3_64bits_withSeed(bytes, size, m_sum);
        return *this;
    }

    std::uint64_t m_sum = 0;
};
} // namespace

// Defined for users of the DLL who bind references to them.
constexpr int sql_RecordFile::FORMAT;
constexpr std::uint32_t sql_RecordFile::APPLICATION_ID;
constexpr int sql_RecordFile::BUSY_MILLISECONDS;

sql_RecordFile::sql_RecordFile(const std::string& file, Mode mode, int busyMilliseconds)
    : m_isReadOnly(mode == Mode::READ_ONLY || mode == Mode::SALVAGE),
      m_db(file, ConnectionMode(file, mode), busyMilliseconds)
{
    try {
        if (mode == Mode::SALVAGE) { // else SQLite gives nothing of a file that lacks its last page
            sqlite3_db_config(m_db.Handle(), SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
            m_db.Execute("PRAGMA writable_schema = ON");
        }
        if (mode == Mode::CREATE) {
            // A block of doubles takes one page and a bit: half the calls of smaller pages. It comes first: SQLite counts
            // the size of its cache in the pages that it has when it is told.
            m_db.Execute("PRAGMA page_size = 16384");
        }
        m_db.Execute("PRAGMA synchronous = FULL; PRAGMA cache_size = -16384; PRAGMA temp_store = MEMORY");
        if (mode == Mode::CREATE) {
            MakeSchema();
        }
        BeginRead(); // nobody changes the file's size meanwhile
        CheckSchema(mode);
        if (mode != Mode::SALVAGE) {
            if (const std::string why = Truncation(); !why.empty()) {
                Throw("'" + file + "' " + why, __LINE__);
            }
            CheckVersions(mode);
        }
        EndRead();
    } catch (const nex_TextException&) {
        const int code = sqlite3_errcode(m_db.Handle());
        const bool isUnreadable = code == SQLITE_NOTADB || code == SQLITE_CORRUPT || mode == Mode::SALVAGE;
        if (const std::string why = isUnreadable ? WhyUnreadable() : ""; !why.empty()) {
            Throw("'" + file + "' " + why, __LINE__);
        }
        throw;
    }
    if (!m_isReadOnly) {
        m_db.Execute(IsLogSafe(sqlite3_libversion_number()) ? "PRAGMA journal_mode = WAL"
                                                            : "PRAGMA journal_mode = DELETE");
    }
}

sql_RecordFile::~sql_RecordFile()
{
    // A file at rest has no log beside it, if nobody else reads it just now: it can be copied and lie where none may be
    // made.
    if (!m_isReadOnly && m_db.IsOwn() && IsLogSafe(sqlite3_libversion_number())) {
        EndRead();
        sqlite3_busy_timeout(m_db.Handle(), 0);
        sqlite3_exec(m_db.Handle(), "PRAGMA journal_mode = DELETE", nullptr, nullptr, nullptr);
    }
}

void sql_RecordFile::MakeSchema()
{
    m_db.Execute("PRAGMA encoding = 'UTF-8'; PRAGMA journal_mode = DELETE; BEGIN IMMEDIATE");
    if (Pragma("SELECT count(*) FROM sqlite_schema") != 0) {
        Throw("'" + Name() + "' cannot be created: another process made it meanwhile", __LINE__);
    }
    for (const auto& [name, text] : sql_detail::SCHEMA) {
        m_db.Execute(text);
    }
    m_db.Execute(("PRAGMA application_id = " + std::to_string(APPLICATION_ID)).c_str());
    m_db.Execute(("PRAGMA user_version = " + std::to_string(FORMAT)).c_str());
    for (const char* setting : {"reader", "writer", "next"}) {
        sql_Rows(m_putSetting, cow_String(setting), FORMAT).Run();
    }
    sql_Statement kind(m_db, "INSERT INTO kind VALUES (?, ?)");
    sql_Statement form(m_db, "INSERT INTO form VALUES (?, ?)");
    for (int code = 0; code < 100; ++code) {
        if (const std::string name = sql_KindName(static_cast<sql_Kind>(code)); !name.starts_with("kind ")) {
            sql_Rows(kind, code, cow_String(name.c_str())).Run();
        }
        if (const std::string name = sql_FormName(static_cast<sql_Form>(code)); !name.starts_with("form ")) {
            sql_Rows(form, code, cow_String(name.c_str())).Run();
        }
    }
    m_db.Execute("COMMIT");
}

void sql_RecordFile::FailNotStore(const std::string& why) const
{
    Throw("'" + Name() + "' is not a store: " + why, __LINE__);
}

std::int64_t sql_RecordFile::Pragma(const char* text)
{
    sql_Statement statement(m_db, text);
    sql_Rows rows(statement);
    return rows.Next() ? rows.Int(0) : 0;
}

void sql_RecordFile::CheckSchema(Mode mode)
{
    const auto id = static_cast<std::uint32_t>(Pragma("PRAGMA application_id"));
    if (id == 0 && Pragma("PRAGMA page_count") == 0) {
        FailNotStore("it is empty");
    }
    if (id != APPLICATION_ID) {
        FailNotStore("it is an SQLite file of another application (id " + std::to_string(id) + ")");
    }
    // A newer format may have other tables: the versions are looked at first.
    if (const std::int64_t format = Pragma("PRAGMA user_version"); format > FORMAT) {
        if (mode == Mode::SALVAGE) {
            Throw("'" + Name() + "' is of a newer format: it has format " + std::to_string(format) +
                      ", this program has format " + std::to_string(FORMAT),
                  __LINE__);
        }
        return;
    }
    sql_Statement text(m_db, "SELECT sql FROM sqlite_schema WHERE name = ?");
    for (const auto& [name, definition] : sql_detail::SCHEMA) {
        sql_Rows rows(text, cow_String(name));
        if (!rows.Next() || rows.Bytes(0) != definition) {
            m_db.FailDamaged("its table '" + std::string(name) + "' is not that of a store");
        }
    }
    sql_Statement encoding(m_db, "PRAGMA encoding");
    if (sql_Rows rows(encoding); !rows.Next() || rows.Bytes(0) != "UTF-8") {
        m_db.FailDamaged("its texts are not in UTF-8");
    }
}

void sql_RecordFile::CheckVersions(Mode mode)
{
    const std::int64_t reader = LowestReader();
    const std::int64_t writer = LowestWriter();
    const auto text = [this](const char* what, std::int64_t lowest) {
        return "'" + Name() + "' is of a newer format: " + what + " format " + std::to_string(lowest) +
               ", this program has format " + std::to_string(FORMAT);
    };
    if (reader > FORMAT) {
        Throw(text("reading it takes", reader), __LINE__);
    }
    if (writer > FORMAT && mode != Mode::READ_ONLY) {
        Throw(text("writing it takes", writer) + "; it can be opened read-only", __LINE__);
    }
}

std::string sql_RecordFile::Truncation() const
{
    constexpr int LOG = 2; // pages may still stand there
    const Head head = HeadOf(m_db);
    const std::int64_t page = head.Number(16, 2) == 1 ? 65536 : head.Number(16, 2);
    const std::int64_t stated = std::max<std::int64_t>(page * head.Number(28, 4), head.bytes.size());
    return head.size >= stated || head.bytes[18] == LOG
               ? ""
               : "is truncated: " + std::to_string(head.size) + " of " + std::to_string(stated) + " bytes are there";
}

std::string sql_RecordFile::WhyUnreadable() const
{
    static constexpr std::string_view magic("SQLite format 3\0", 16);
    const Head head = HeadOf(m_db);
    return std::equal(magic.begin(), magic.end(), head.bytes.begin(),
                      [](char left, unsigned char right) { return left == static_cast<char>(right); })
               ? Truncation()
               : "is not a store: it is a file of another format";
}

void sql_RecordFile::EndRead() noexcept
{
    // Nothing was written, so there is nothing that could fail to be.
    sqlite3_exec(m_db.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void sql_RecordFile::Rollback()
{
    if (m_db.InTransaction()) {
        m_db.Execute("ROLLBACK");
    }
}

std::int64_t sql_RecordFile::Setting(const char* name)
{
    const cow_String key(name);
    sql_Rows rows(m_setting, key);
    const std::int64_t value = rows.Next() ? rows.Int(0) : 0;
    if (value < 0 || value > MAX_NUMBER) {
        m_db.FailDamaged("its setting '" + std::string(name) + "' is out of range");
    }
    return value;
}

std::int64_t sql_RecordFile::Version(const char* name)
{
    const std::int64_t version = Setting(name);
    if (version < 1) {
        m_db.FailDamaged("it names no format version");
    }
    return version;
}

std::int64_t sql_RecordFile::NextNumber()
{
    const std::int64_t next = Setting("next");
    sql_Rows rows(m_lastRecord);
    if (!rows.Next() || rows.Int(0) >= next) {
        m_db.FailDamaged("its setting 'next' is the number of a record");
    }
    return next;
}

void sql_RecordFile::SetNextNumber(std::int64_t number)
{
    const cow_String key("next");
    sql_Rows(m_putSetting, key, number).Run();
}

std::int64_t sql_RecordFile::SumOf(const sql_Record& record)
{
    const std::int64_t numbers[] = {
        record.id,     record.classRow, record.owner, record.identity, static_cast<std::int64_t>(record.form),
        record.length, record.revision};
    return Sum().Add(std::string_view(reinterpret_cast<const char*>(numbers), sizeof numbers)).Short();
}

std::int64_t sql_RecordFile::SumOf(std::int64_t record, const sql_Key& key, const sql_Cell& cell)
{
    return Sum().Add(record).Add(key).Add(cell).Short();
}

std::int64_t sql_RecordFile::SumOfBlock(std::int64_t place, std::string_view bytes)
{
    return static_cast<std::int64_t>(
        XXH3_64bits_withSeed(bytes.data(), bytes.size(), static_cast<std::uint64_t>(place)));
}

std::int64_t sql_RecordFile::SumOf(const sql_Class& added)
{
    Sum sum;
    sum.Add(added.row).Add(added.name.view()).Add(added.version).Add(std::int64_t{added.typeId});
    for (const sql_Attribute& attribute : added.attributes) {
        sum.Add(attribute.name.view()).Add(std::int64_t{attribute.type});
        sum.Add(std::int64_t{attribute.count}).Add(std::int64_t{attribute.collection});
    }
    return sum.Short();
}

std::int64_t sql_RecordFile::SumOfRoot(const cow_String& name, std::int64_t record)
{
    return Sum().Add(name.view()).Add(record).Short();
}

std::optional<sql_Record> sql_RecordFile::FindRecord(std::int64_t id)
{
    sql_Rows rows(m_findRecord, id);
    if (!rows.Next()) {
        return std::nullopt;
    }
    const sql_Record record{.id = id,
                            .classRow = rows.Int(0),
                            .owner = rows.Int(1),
                            .identity = rows.Int(2),
                            .form = static_cast<sql_Form>(rows.Int(3)),
                            .length = rows.Int(4),
                            .revision = rows.Int(5)};
    const bool isSound = id <= MAX_NUMBER && record.length >= 0 &&
                         record.length <= std::numeric_limits<std::int32_t>::max() && record.identity >= 0 &&
                         record.identity < id; // numbers rise, and an identity comes first
    if (SumOf(record) != rows.Int(6) || !isSound) {
        FailDamaged("record " + std::to_string(id) + " does not match its checksum");
    }
    return record;
}

void sql_RecordFile::PutRecord(const sql_Record& record)
{
    sql_Rows(m_putRecord, record.id, record.classRow, record.owner, record.identity, static_cast<int>(record.form),
             record.length, record.revision, SumOf(record))
        .Run();
}

void sql_RecordFile::RemoveRecord(std::int64_t id)
{
    RemoveRows(id);
    RemoveBlocks(id);
    sql_Rows(m_removeRecord, id).Run();
}

std::vector<sql_Records::Row> sql_RecordFile::Rows(std::int64_t record)
{
    std::vector<Row> found;
    for (sql_Rows rows(m_rows, record); rows.Next();) {
        Row row{rows.Key(0), rows.Cell(1)};
        if (SumOf(record, row.first, row.second) != rows.Int(3)) {
            FailDamaged("field " + row.first.AsString() + " of record " + std::to_string(record) +
                        " does not match its checksum");
        }
        if (!found.empty() && !(found.back().first < row.first)) {
            FailDamaged("the fields of record " + std::to_string(record) + " are out of order");
        }
        found.push_back(std::move(row));
    }
    CheckHeldOnce(record, found);
    return found;
}

/// Two rows with the same record would be two ways to it, and a few dozen records of that kind more ways than can be gone.
void sql_RecordFile::CheckHeldOnce(std::int64_t record, const std::vector<Row>& rows) const
{
    std::vector<std::int64_t> held;
    for (const auto& [key, cell] : rows) {
        if (cell.IsObject()) {
            held.push_back(cell.Record());
        }
    }
    std::sort(held.begin(), held.end());
    if (const auto twice = std::adjacent_find(held.begin(), held.end()); twice != held.end()) {
        FailDamaged("record " + std::to_string(record) + " holds record " + std::to_string(*twice) + " twice");
    }
}

std::optional<sql_Cell> sql_RecordFile::FindRow(std::int64_t record, const sql_Key& key)
{
    sql_Rows rows(m_findRow, record, key);
    if (!rows.Next()) {
        return std::nullopt;
    }
    sql_Cell cell = rows.Cell(0);
    if (SumOf(record, key, cell) != rows.Int(2)) {
        FailDamaged("field " + key.AsString() + " of record " + std::to_string(record) +
                    " does not match its checksum");
    }
    return cell;
}

void sql_RecordFile::PutRow(std::int64_t record, const sql_Key& key, const sql_Cell& cell)
{
    sql_Rows(m_putRow, record, key, static_cast<int>(cell.kind), cell, SumOf(record, key, cell)).Run();
}

void sql_RecordFile::RemoveRow(std::int64_t record, const sql_Key& key)
{
    sql_Rows(m_removeRow, record, key).Run();
}

void sql_RecordFile::RemoveRows(std::int64_t record)
{
    sql_Rows(m_removeRows, record).Run();
}

bool sql_RecordFile::ReadBlock(std::int64_t record, std::int64_t block, const BlockSink& sink)
{
    const std::int64_t place = BlockPlace(record, block);
    sql_Rows rows(m_readBlock, place);
    if (!rows.Next()) {
        return false;
    }
    const std::string_view bytes = rows.Bytes(1);
    if (SumOfBlock(place, bytes) != rows.Int(0)) {
        FailDamaged("block " + std::to_string(block) + " of record " + std::to_string(record) +
                    " does not match its checksum");
    }
    sink(bytes);
    return true;
}

void sql_RecordFile::PutBlock(std::int64_t record, std::int64_t block, std::string_view bytes)
{
    const std::int64_t place = BlockPlace(record, block);
    sql_Rows(m_putBlock, place, SumOfBlock(place, bytes), bytes).Run();
}

void sql_RecordFile::RemoveBlocks(std::int64_t record)
{
    sql_Rows(m_removeBlocks, BlockPlace(record, 0), BlockPlace(record + 1, 0)).Run();
}

std::vector<std::pair<cow_String, std::int64_t>> sql_RecordFile::Roots()
{
    std::vector<std::pair<cow_String, std::int64_t>> roots;
    for (sql_Rows rows(m_roots); rows.Next();) {
        const cow_String name(rows.Bytes(0));
        if (SumOfRoot(name, rows.Int(1)) != rows.Int(2)) {
            FailDamaged("the root '" + std::string(name.view()) + "' does not match its checksum");
        }
        roots.emplace_back(name, rows.Int(1));
    }
    return roots;
}

std::optional<std::int64_t> sql_RecordFile::FindRoot(const cow_String& name)
{
    for (const auto& [found, record] : Roots()) {
        if (found == name) {
            return record;
        }
    }
    return std::nullopt;
}

void sql_RecordFile::PutRoot(const cow_String& name, std::int64_t record)
{
    sql_Rows(m_putRoot, name, record, SumOfRoot(name, record)).Run();
}

void sql_RecordFile::RemoveRoot(const cow_String& name)
{
    sql_Rows(m_removeRoot, name).Run();
}

std::vector<sql_Attribute> sql_RecordFile::AttributesOf(std::int64_t classRow)
{
    std::vector<sql_Attribute> attributes;
    for (sql_Rows rows(m_attributes, classRow); rows.Next();) {
        attributes.push_back({cow_String(rows.Bytes(0)), static_cast<std::uint32_t>(rows.Int(1)),
                              static_cast<std::uint32_t>(rows.Int(2)), static_cast<std::uint32_t>(rows.Int(3))});
    }
    return attributes;
}

std::vector<sql_Class> sql_RecordFile::Classes()
{
    std::vector<sql_Class> classes;
    for (sql_Rows rows(m_classes); rows.Next();) {
        if (auto found = FindClass(rows.Int(0))) {
            classes.push_back(std::move(*found));
        }
    }
    return classes;
}

std::optional<sql_Class> sql_RecordFile::FindClass(std::int64_t row)
{
    sql_Rows rows(m_findClass, row);
    if (!rows.Next()) {
        return std::nullopt;
    }
    sql_Class found{row, cow_String(rows.Bytes(0)), static_cast<int>(rows.Int(1)),
                    static_cast<std::uint32_t>(rows.Int(2)), AttributesOf(row)};
    if (SumOf(found) != rows.Int(3)) {
        FailDamaged("the class '" + std::string(found.name.view()) + "' does not match its checksum");
    }
    return found;
}

std::int64_t sql_RecordFile::CountRecordsOf(std::int64_t classRow)
{
    sql_Rows rows(m_countOf, classRow);
    return rows.Next() ? rows.Int(0) : 0;
}

void sql_RecordFile::AddClass(const sql_Class& added)
{
    sql_Rows(m_addClass, added.row, added.name, added.version, std::int64_t{added.typeId}, SumOf(added)).Run();
    for (const sql_Attribute& attribute : added.attributes) {
        sql_Rows(m_addAttribute, added.row, attribute.name, std::int64_t{attribute.type}, std::int64_t{attribute.count},
                 std::int64_t{attribute.collection})
            .Run();
    }
}
