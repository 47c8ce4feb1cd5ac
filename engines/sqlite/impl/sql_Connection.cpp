#include "sql_Connection.h"

#include "VEXcrt_System.h"
#include "nex_TextException.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <sqlite3.h>

namespace
{
constexpr const char* SOURCE = "engines/sqlite/impl/sql_Connection";

int OpenFlags(sql_Connection::Mode mode) noexcept
{
    switch (mode) {
    case sql_Connection::Mode::READ_ONLY:
        return SQLITE_OPEN_READONLY;
    case sql_Connection::Mode::READ_WRITE:
        return SQLITE_OPEN_READWRITE;
    case sql_Connection::Mode::CREATE:
        return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    }
    return 0;
}

/// A name that SQLite takes for a file's, whatever it is: it has others of its own, for databases that are in memory only
/// ("" and ":memory:") and for those with options ("file:...").
std::string FileName(const std::string& file)
{
    const bool isSpecial = file.empty() || file.starts_with(':') || file.starts_with("file:");
    return isSpecial ? "./" + file : file;
}

/// A file from elsewhere may hold anything: nothing in it may run, and every page is checked when it is read.
void Distrust(sqlite3* handle) noexcept
{
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_exec(handle, "PRAGMA cell_size_check = ON; PRAGMA mmap_size = 0", nullptr, nullptr, nullptr);
}
} // namespace

sql_Connection::sql_Connection(const std::string& file, Mode mode, int busyMilliseconds)
    : m_file(file), m_process(VEXCRT::ProcessId()), m_busyMilliseconds(busyMilliseconds)
{
    // A pipe would be waited for, a device overwritten.
    if (std::error_code ignored; std::filesystem::is_other(file, ignored)) {
        const std::string text = "'" + file + "' is not a store: it is a device or a pipe";
        nex_TextException(text.c_str()).Throw(SOURCE, __LINE__);
    }
    const int code = sqlite3_open_v2(FileName(file).c_str(), &m_handle, OpenFlags(mode) | SQLITE_OPEN_NOMUTEX, nullptr);
    try {
        if (code != SQLITE_OK) {
            Fail("cannot open");
        }
        sqlite3_extended_result_codes(m_handle, 1);
        sqlite3_busy_timeout(m_handle, busyMilliseconds);
        Distrust(m_handle);
    } catch (...) {
        sqlite3_close_v2(m_handle);
        throw;
    }
}

sql_Connection::~sql_Connection()
{
    // Closing it in a forked process could remove a journal that the owner still needs.
    if (IsOwn()) {
        sqlite3_close_v2(m_handle);
    }
}

void sql_Connection::Execute(const char* statements)
{
    if (sqlite3_exec(m_handle, statements, nullptr, nullptr, nullptr) != SQLITE_OK) {
        Fail("cannot run \"" + std::string(statements) + "\"");
    }
}

bool sql_Connection::InTransaction() const noexcept
{
    return sqlite3_get_autocommit(m_handle) == 0;
}

bool sql_Connection::IsOwn() const noexcept
{
    return m_process == VEXCRT::ProcessId();
}

void sql_Connection::CheckProcess() const
{
    if (!IsOwn()) {
        const std::string text = "'" + m_file + "' was opened by another process, before a fork: open it again";
        nex_TextException(text.c_str()).Throw(SOURCE, __LINE__);
    }
}

void sql_Connection::Fail(const std::string& what) const
{
    const int code = m_handle != nullptr ? sqlite3_extended_errcode(m_handle) : SQLITE_NOMEM;
    std::string text = "'" + m_file + "' ";
    switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        text += "is in use: waited " + std::to_string(m_busyMilliseconds) + " ms for another process or connection";
        break;
    case SQLITE_CORRUPT:
        text += "is damaged: " + what + ": " + sqlite3_errmsg(m_handle);
        break;
    case SQLITE_READONLY:
        text += code == SQLITE_READONLY_ROLLBACK || code == SQLITE_READONLY_RECOVERY
                    ? "holds a save that was cut short: open it to write, which takes that back"
                : code == SQLITE_READONLY_DBMOVED ? what + ": it was moved, removed or replaced since it was opened"
                                                  : what + ": " + sqlite3_errmsg(m_handle);
        break;
    case SQLITE_NOTADB:
        text += "is not a store: " + std::string(sqlite3_errmsg(m_handle));
        break;
    default:
        text += what + ": " + (m_handle != nullptr ? sqlite3_errmsg(m_handle) : "out of memory");
        if (const int error = m_handle != nullptr ? sqlite3_system_errno(m_handle) : 0;
            error != 0 && ((code & 0xFF) == SQLITE_CANTOPEN || (code & 0xFF) == SQLITE_IOERR)) {
            text += " (" + VEXCRT::ErrorText(error) + ")";
        }
    }
    nex_TextException(text.c_str()).Throw(SOURCE, __LINE__);
}

void sql_Connection::FailDamaged(const std::string& how) const
{
    const std::string text = "'" + m_file + "' is damaged: " + how;
    nex_TextException(text.c_str()).Throw(SOURCE, __LINE__);
}

sql_Statement::~sql_Statement()
{
    sqlite3_finalize(m_handle);
}

void sql_Rows::Prepare()
{
    if (m_statement.m_handle == nullptr) {
        Check(sqlite3_prepare_v3(m_statement.m_connection.Handle(), m_statement.m_text, -1, SQLITE_PREPARE_PERSISTENT,
                                 &m_statement.m_handle, nullptr));
    }
}

sql_Rows::~sql_Rows()
{
    sqlite3_reset(m_statement.m_handle);
}

bool sql_Rows::Next()
{
    const int code = sqlite3_step(m_statement.m_handle);
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        Check(code);
    }
    return code == SQLITE_ROW;
}

void sql_Rows::Run()
{
    while (Next()) {
    }
}

void sql_Rows::Check(int code) const
{
    if (code != SQLITE_OK) {
        const std::string_view text = m_statement.m_text;
        const bool isRead = text.starts_with("SELECT") || text.starts_with("PRAGMA");
        m_statement.m_connection.Fail(isRead ? "cannot be read" : "cannot be written");
    }
}

std::int64_t sql_Rows::Int(int column) const
{
    if (sqlite3_column_type(m_statement.m_handle, column) != SQLITE_INTEGER) {
        m_statement.m_connection.FailDamaged("no number where one has to be");
    }
    return sqlite3_column_int64(m_statement.m_handle, column);
}

bool sql_Rows::IsNull(int column) const noexcept
{
    return sqlite3_column_type(m_statement.m_handle, column) == SQLITE_NULL;
}

std::string_view sql_Rows::Bytes(int column) const
{
    const int type = sqlite3_column_type(m_statement.m_handle, column);
    if (type != SQLITE_TEXT && type != SQLITE_BLOB) {
        m_statement.m_connection.FailDamaged("no text where one has to be");
    }
    const void* const bytes = sqlite3_column_blob(m_statement.m_handle, column);
    const int length = sqlite3_column_bytes(m_statement.m_handle, column);
    if (bytes == nullptr && length > 0) {
        m_statement.m_connection.Fail("cannot be read");
    }
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(bytes != nullptr ? length : 0)};
}

sql_Key sql_Rows::Key(int column) const
{
    return sqlite3_column_type(m_statement.m_handle, column) == SQLITE_INTEGER ? sql_Key(Int(column))
                                                                               : sql_Key(cow_String(Bytes(column)));
}

sql_Cell sql_Rows::Cell(int column) const
{
    sqlite3_stmt* const handle = m_statement.m_handle;
    sql_Cell cell{static_cast<sql_Kind>(Int(column)), std::int64_t{0}};
    switch (sqlite3_column_type(handle, column + 1)) {
    case SQLITE_INTEGER:
        cell.data = sqlite3_column_int64(handle, column + 1);
        break;
    case SQLITE_FLOAT:
        cell.data = sqlite3_column_double(handle, column + 1);
        break;
    default:
        cell.data = cow_String(Bytes(column + 1));
    }
    const auto* const bytes = std::get_if<cow_String>(&cell.data);
    if ((cell.kind == sql_Kind::DOUBLE || cell.kind == sql_Kind::FLOAT) && bytes != nullptr &&
        bytes->size() == sizeof(double)) {
        double number = 0;
        std::memcpy(&number, bytes->AsCharPtr(), sizeof number);
        cell.data = number;
    }
    if (!sql_IsSound(cell)) {
        m_statement.m_connection.FailDamaged("a value that is no " + sql_KindName(cell.kind));
    }
    return cell;
}

void sql_Rows::Bind(int index, std::int64_t number)
{
    Check(sqlite3_bind_int64(m_statement.m_handle, index, number));
}

void sql_Rows::Bind(int index, double number)
{
    if (std::isnan(number)) {
        m_bits = std::bit_cast<std::uint64_t>(number);
        Bind(index, std::string_view(reinterpret_cast<const char*>(&m_bits), sizeof m_bits));
    } else {
        Check(sqlite3_bind_double(m_statement.m_handle, index, number));
    }
}

void sql_Rows::Bind(int index, std::string_view bytes)
{
    // A null pointer would bind NULL.
    Check(sqlite3_bind_blob64(m_statement.m_handle, index, bytes.data() != nullptr ? bytes.data() : "", bytes.size(),
                              SQLITE_STATIC));
}

void sql_Rows::Bind(int index, const cow_String& text)
{
    // A short text is part of the object, which may be a temporary: SQLite takes a copy.
    if (sql_IsPlainText(text)) {
        Check(sqlite3_bind_text64(m_statement.m_handle, index, text.AsCharPtr(), text.size(), SQLITE_TRANSIENT,
                                  SQLITE_UTF8));
    } else {
        Check(sqlite3_bind_blob64(m_statement.m_handle, index, text.AsCharPtr(), text.size(), SQLITE_TRANSIENT));
    }
}

void sql_Rows::Bind(int index, const sql_Key& key)
{
    if (key.IsNumber()) {
        Bind(index, key.Number());
    } else {
        Bind(index, key.Text());
    }
}

void sql_Rows::Bind(int index, const sql_Cell& cell)
{
    if (const auto* number = std::get_if<std::int64_t>(&cell.data)) {
        Bind(index, *number);
    } else if (const auto* real = std::get_if<double>(&cell.data)) {
        Bind(index, *real);
    } else if (cell.kind == sql_Kind::STRING) {
        Bind(index, std::get<cow_String>(cell.data));
    } else {
        Bind(index, std::get<cow_String>(cell.data).view());
    }
}
