#include "vexstore.h"

#include "nex_TextException.h"

#include <filesystem>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>

namespace
{
/// Takes the rows of a damaged store that are sound into a new one, and tells what could not be taken.
class Salvage
{
public:
    Salvage(sql_RecordFile& from, sql_RecordFile& to) : m_from(from), m_to(to) {}

    int Run()
    {
        if (const std::string why = m_from.Truncation(); !why.empty()) {
            Lost("the file " + why);
        }
        m_to.BeginWrite();
        TakeClasses();
        TakeRecords();
        TakeRows();
        TakeBlocks();
        TakeRoots();
        Settle();
        m_to.SetNextNumber(m_last + 1);
        m_to.Commit();
        std::cout << m_kept.size() << " records taken, " << m_lost << " losses\n";
        return m_lost == 0 ? DONE : FOUND;
    }

private:
    void Lost(const std::string& what)
    {
        ++m_lost;
        std::cout << Coloured(31, "lost: ") << Printable(what) << '\n';
    }

    /// Hands the numbers that a query gives for those above, or below, a bound to `take`, as far as the pages are whole.
    /// The query has the bound as its parameter and gives rows in order.
    template <class F> bool Scan(const char* query, std::int64_t bound, F take)
    {
        try {
            sql_Statement statement(m_from.Connection(), query);
            for (sql_Rows rows(statement, bound); rows.Next();) {
                take(rows.Int(0));
            }
            return true;
        } catch (const nex_TextException&) {
            return false;
        }
    }

    /// The numbers in a column, from both ends towards what cannot be read.
    std::set<std::int64_t> Numbers(const std::string& column, const std::string& table)
    {
        constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
        const std::string from = "SELECT DISTINCT " + column + " FROM " + table + " WHERE " + column;
        const std::string up = from + " > ? ORDER BY " + column;
        const std::string down = from + " <= ? ORDER BY " + column + " DESC";
        std::set<std::int64_t> numbers;
        const auto take = [&numbers](std::int64_t number) { numbers.insert(number); };
        if (!Scan(up.c_str(), least, take)) {
            Scan(down.c_str(), std::numeric_limits<std::int64_t>::max(), take);
            Lost("table " + table + " cannot be read from end to end");
        }
        return numbers;
    }

    /// Does `take`, and counts a failure of it as a loss.
    template <class F> void Try(const std::string& what, F take)
    {
        try {
            take();
        } catch (const nex_TextException& failure) {
            Lost(what + ": " + failure.what());
        }
    }

    /// Writes to the new file. A failure of that is no loss of the old one's: it ends the work.
    template <class F> static void Put(F put)
    {
        try {
            put();
        } catch (const nex_TextException& failure) {
            throw std::runtime_error(failure.what());
        }
    }

    void TakeClasses()
    {
        for (const std::int64_t row : Numbers("id", "class")) {
            Try("class " + std::to_string(row), [&] {
                if (const auto found = m_from.FindClass(row)) {
                    AddClass(*found);
                }
            });
        }
    }

    void AddClass(const sql_Class& added)
    {
        Put([&] { m_to.AddClass(added); });
        m_classes.insert(added.row);
    }

    /// Objects whose class cannot be read are kept as of one that no program knows.
    void RequireClass(std::int64_t row)
    {
        if (!m_classes.contains(row)) {
            const std::string name = "lost-class-" + std::to_string(row);
            AddClass({.row = row, .name = name.c_str(), .version = 0, .typeId = 0, .attributes = {}});
            Lost("what class " + std::to_string(row) + " is: its objects are kept as of class '" + name + "'");
        }
    }

    void TakeRecords()
    {
        const std::set<std::int64_t> ids = Numbers("id", "record");
        Progress progress(static_cast<std::int64_t>(ids.size()));
        for (const std::int64_t id : ids) {
            Try("record " + std::to_string(id), [&] {
                const auto record = m_from.FindRecord(id);
                if (id <= 0 || !record) {
                    m_from.FailDamaged("it is not where it is looked for");
                }
                RequireClass(record->classRow);
                m_kept.emplace(id, *record);
                m_last = std::max({m_last, id, record->identity});
            });
            progress.Step();
        }
    }

    void TakeRows()
    {
        sql_Statement keys(m_from.Connection(), "SELECT key FROM field WHERE record = ?");
        Progress progress(static_cast<std::int64_t>(m_kept.size()));
        for (auto& [id, record] : m_kept) {
            progress.Step();
            if (sql_PagedKind(record.form)) {
                continue;
            }
            const std::int64_t expected = std::exchange(record.length, 0);
            std::set<sql_Key> found;
            Try("fields of record " + std::to_string(id), [&] {
                for (sql_Rows rows(keys, id); rows.Next();) {
                    found.insert(rows.Key(0));
                }
            });
            for (const sql_Key& key : found) {
                Try("field " + key.AsString() + " of record " + std::to_string(id), [&] { TakeRow(record, key); });
            }
            if (record.length < expected && static_cast<std::int64_t>(found.size()) < expected) {
                Lost(std::to_string(expected - static_cast<std::int64_t>(found.size())) + " fields of record " +
                     std::to_string(id) + " are gone");
            }
        }
    }

    void TakeRow(sql_Record& record, const sql_Key& key)
    {
        const auto cell = m_from.FindRow(record.id, key);
        if (!cell) {
            m_from.FailDamaged("it is not where it is looked for");
        }
        if (cell->IsObject()) {
            const auto child = m_kept.find(cell->Record());
            if (child == m_kept.end()) {
                m_from.FailDamaged("record " + std::to_string(cell->Record()) + " is missing");
            }
            if (child->second.owner != record.id || !m_held.insert(child->first).second) {
                m_from.FailDamaged("record " + std::to_string(cell->Record()) + " belongs elsewhere");
            }
        }
        Put([&] { m_to.PutRow(record.id, key, *cell); });
        ++record.length;
    }

    /// A paged list ends at its first block that is missing or damaged: what comes after would get other indices.
    void TakeBlocks()
    {
        std::int64_t count = 0;
        for (const auto& [id, record] : m_kept) {
            count += sql_PagedKind(record.form) ? BlockCount(record) : 0;
        }
        Progress progress(count);
        for (auto& [id, record] : m_kept) {
            const auto element = sql_PagedKind(record.form);
            if (!element) {
                continue;
            }
            const std::int64_t expected = std::exchange(record.length, 0);
            try {
                for (std::int64_t block = 0; record.length < expected; ++block) {
                    TakeBlock(record, *element, block, expected - record.length);
                    progress.Step();
                }
            } catch (const nex_TextException& failure) {
                Lost("values " + std::to_string(record.length) + " to " + std::to_string(expected - 1) + " of record " +
                     std::to_string(id) + ": " + failure.what());
            }
        }
    }

    void TakeBlock(sql_Record& record, sql_Kind element, std::int64_t block, std::int64_t left)
    {
        const std::string bytes = BlockOf(m_from, record, block);
        const auto count = static_cast<std::int64_t>(ItemsOf(element, bytes).size());
        if (count != std::min<std::int64_t>(left, sql_Records::BLOCK_LENGTH)) {
            m_from.FailDamaged("block " + std::to_string(block) + " holds " + std::to_string(count) + " values");
        }
        Put([&] { m_to.PutBlock(record.id, block, bytes); });
        record.length += count;
    }

    void TakeRoots()
    {
        sql_Statement roots(m_from.Connection(), "SELECT name, record, checksum FROM root");
        Try("roots", [&] {
            for (sql_Rows rows(roots); rows.Next();) {
                const cow_String name(rows.Bytes(0));
                const std::int64_t id = rows.Int(1);
                const auto record = m_kept.find(id);
                if (sql_RecordFile::SumOfRoot(name, id) != rows.Int(2) || record == m_kept.end() ||
                    record->second.owner != 0 || !m_held.insert(id).second) {
                    Lost("the root '" + std::string(name.view()) + "'");
                } else {
                    Put([&] { m_to.PutRoot(name, id); });
                }
            }
        });
    }

    /// Records that nothing holds any more become roots, so that they can be found. What is left of a list moves up.
    void Settle()
    {
        for (auto& [id, record] : m_kept) {
            if (!m_held.contains(id)) {
                record.owner = 0;
                const std::string name = "recovered-" + std::to_string(id);
                m_to.PutRoot(name.c_str(), id);
                std::cout << Coloured(33, "kept apart: ") << "record " << id << ", as the root '" << name << "'\n";
            }
            if (static_cast<int>(record.form) / 10 * 10 == static_cast<int>(sql_Form::LIST)) {
                MoveUp(record);
            }
            m_to.PutRecord(record);
        }
    }

    void MoveUp(const sql_Record& record)
    {
        std::int64_t next = 0;
        for (const auto& [key, cell] : m_to.Rows(record.id)) {
            if (!key.IsNumber() || key.Number() != next) {
                m_to.RemoveRow(record.id, key);
                m_to.PutRow(record.id, sql_Key(next), cell);
            }
            ++next;
        }
    }

    sql_RecordFile& m_from;
    sql_RecordFile& m_to;
    std::set<std::int64_t> m_classes{0};
    std::map<std::int64_t, sql_Record> m_kept;
    std::set<std::int64_t> m_held; // by a field or a root
    std::int64_t m_last = 0;
    int m_lost = 0;
};
} // namespace

int Recover(sql_RecordFile& damaged, const std::string& target)
{
    auto file = std::make_unique<sql_RecordFile>(target, sql_RecordFile::Mode::CREATE);
    try {
        return Salvage(damaged, *file).Run();
    } catch (...) {
        file.reset();
        std::error_code ignored;
        std::filesystem::remove(target, ignored); // it was made for this, and holds nothing
        throw;
    }
}
