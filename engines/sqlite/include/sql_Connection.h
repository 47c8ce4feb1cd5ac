#pragma once

#include "VEXsqlite_export.h"
#include "sql_Value.h"

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

/// An open SQLite file, for one process and one thread.
///
/// Ownership:  closes the file; statements refer to it and go first.
/// Threads:    one thread at a time. In a process forked from the one that opened it only the destructor may be called,
///             which then leaves the file to its owner.
/// Errors:     nex_TextException "'file': what failed: why"; a locked file is reported after the busy timeout.
class VEXSQLITE_API sql_Connection
{
public:
    enum class Mode
    {
        READ_ONLY,
        READ_WRITE,
        CREATE ///< the file must not be there, or be empty
    };

    sql_Connection(const std::string& file, Mode mode, int busyMilliseconds);
    sql_Connection(const sql_Connection&) = delete;
    sql_Connection& operator=(const sql_Connection&) = delete;
    ~sql_Connection();

    /// Runs statements that give no rows.
    void Execute(const char* statements);
    /// True from a BEGIN until its COMMIT or ROLLBACK, or until SQLite rolled back by itself.
    bool InTransaction() const noexcept;
    /// Throws in a forked process, where SQLite must not be used.
    void CheckProcess() const;

    /// False in a forked process.
    bool IsOwn() const noexcept;

    const std::string& File() const noexcept { return m_file; }
    sqlite3* Handle() const noexcept { return m_handle; }

    /// Throws what SQLite says about its last failure. `what` is what was tried: "cannot read".
    [[noreturn]] void Fail(const std::string& what) const;
    /// Throws "'file' is damaged: how".
    [[noreturn]] void FailDamaged(const std::string& how) const;

private:
    std::string m_file;
    std::uint32_t m_process;
    int m_busyMilliseconds;
    sqlite3* m_handle = nullptr;
};

/// A statement, prepared when it is first run and kept.
///
/// Ownership:  refers to its connection and to the text, which both outlive it.
class VEXSQLITE_API sql_Statement
{
public:
    sql_Statement(sql_Connection& connection, const char* text) noexcept : m_connection(connection), m_text(text) {}
    sql_Statement(const sql_Statement&) = delete;
    sql_Statement& operator=(const sql_Statement&) = delete;
    ~sql_Statement();

private:
    friend class sql_Rows;

    sql_Connection& m_connection;
    const char* m_text;
    sqlite3_stmt* m_handle = nullptr;
};

/// One run of a statement. Parameters are bound in order; the memory of bytes must last as long as the run, all others
/// are copied.
///
/// Errors:     nex_TextException; a column of another type than asked for is damage.
/// Example:    for (sql_Rows rows(m_fields, record); rows.Next();) { Use(rows.Int(0)); }
class VEXSQLITE_API sql_Rows
{
public:
    template <class... Parameters>
    explicit sql_Rows(sql_Statement& statement, const Parameters&... parameters) : m_statement(statement)
    {
        Prepare();
        int index = 0;
        (Bind(++index, parameters), ...);
    }
    sql_Rows(const sql_Rows&) = delete;
    sql_Rows& operator=(const sql_Rows&) = delete;
    ~sql_Rows();

    /// Goes to the next row; false when there is none.
    bool Next();
    /// Runs a statement that gives no rows, to its end.
    void Run();

    std::int64_t Int(int column) const;
    bool IsNull(int column) const noexcept;
    /// Text or bytes; the view dies with the row.
    std::string_view Bytes(int column) const;
    sql_Key Key(int column) const;
    /// The kind in `column` and its data in the next. Not sound: damage.
    sql_Cell Cell(int column) const;

private:
    void Prepare();
    void Bind(int index, std::int64_t number);
    void Bind(int index, int number) { Bind(index, std::int64_t{number}); }
    void Bind(int index, double number);
    /// Bytes, not text.
    void Bind(int index, std::string_view bytes);
    /// Plain text as text, any other as bytes.
    void Bind(int index, const cow_String& text);
    void Bind(int index, const sql_Key& key);
    /// The data alone. A NaN, which SQLite would make null, as the bytes of its bits.
    void Bind(int index, const sql_Cell& cell);
    void Check(int code) const;

    sql_Statement& m_statement;
    std::uint64_t m_bits = 0; // of a NaN that is bound
};
