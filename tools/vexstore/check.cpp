#include "vexstore.h"

#include "nex_TextException.h"

#include <iostream>
#include <set>

namespace
{
/// Looks at every row of a store, and says each fault it finds.
class Checker
{
public:
    explicit Checker(sql_RecordFile& file) : m_file(file) {}

    int Run()
    {
        Step([&] { CheckPages(); });
        Step([&] { m_file.NextNumber(); });
        Step([&] { CheckTrees(); });
        Step([&] { CheckOrphans("SELECT id FROM record", "record %: no root leads to it"); });
        Step([&] { CheckOrphans("SELECT DISTINCT record FROM field", "the fields of record %: it is missing"); });
        Step([&] { CheckOrphans("SELECT DISTINCT id >> 20 FROM block", "the blocks of record %: it is missing"); });
        std::cout << m_file.Name() << ": " << m_seen.size() << " records, "
                  << (m_faults == 0 ? Coloured(32, "no faults") : Coloured(31, std::to_string(m_faults) + " faults"))
                  << '\n';
        return m_faults == 0 ? DONE : FOUND;
    }

private:
    void Fault(const std::string& what)
    {
        ++m_faults;
        std::cout << Coloured(31, "fault: ") << what << '\n';
    }

    /// A fault that keeps one step from going on leaves the others.
    template <class F> void Step(F step)
    {
        try {
            step();
        } catch (const nex_TextException& failure) {
            Fault(failure.what());
        }
    }

    void CheckPages()
    {
        sql_Statement statement(m_file.Connection(), "PRAGMA integrity_check(100)");
        for (sql_Rows rows(statement); rows.Next();) {
            if (const std::string line(rows.Bytes(0)); line != "ok") {
                Fault(line);
            }
        }
    }

    void CheckTrees()
    {
        m_classes = ClassTexts(m_file);
        Progress progress(Count(m_file, "SELECT count(*) FROM record"));
        for (const auto& [name, id] : m_file.Roots()) {
            std::vector<sql_Record> left;
            Step([&] { left.push_back(ChildOf(m_file, 0, {sql_Kind::OBJECT, id})); });
            while (!left.empty()) {
                const sql_Record record = left.back();
                left.pop_back();
                m_seen.insert(record.id);
                progress.Step();
                Step([&] { CheckRecord(record, left); });
            }
        }
    }

    void CheckRecord(const sql_Record& record, std::vector<sql_Record>& left)
    {
        if (!m_classes.contains(record.classRow)) {
            Fault("record " + std::to_string(record.id) + ": its class " + std::to_string(record.classRow) +
                  " is missing");
        }
        if (const auto element = sql_PagedKind(record.form)) {
            CheckBlocks(record, *element);
            return;
        }
        const auto rows = m_file.Rows(record.id);
        if (static_cast<std::int64_t>(rows.size()) != record.length) {
            Fault("record " + std::to_string(record.id) + " has " + std::to_string(rows.size()) + " of " +
                  std::to_string(record.length) + " rows");
        }
        for (const auto& [key, cell] : rows) {
            if (cell.IsObject()) {
                Step([&] { left.push_back(ChildOf(m_file, record.id, cell)); });
            }
        }
    }

    void CheckBlocks(const sql_Record& record, sql_Kind element)
    {
        const std::int64_t size = sql_Records::BLOCK_LENGTH;
        for (std::int64_t block = 0; block * size < record.length; ++block) {
            const std::string name = "block " + std::to_string(block) + " of record " + std::to_string(record.id);
            const auto expected = static_cast<std::size_t>(std::min(size, record.length - block * size));
            Step([&] {
                const bool isThere = m_file.ReadBlock(record.id, block, [&](std::string_view bytes) {
                    if (ItemsOf(element, bytes).size() != expected) {
                        Fault(name + " does not hold " + std::to_string(expected) + " values");
                    }
                });
                if (!isThere) {
                    Fault(name + " is missing");
                }
            });
        }
        sql_Statement statement(m_file.Connection(), "SELECT count(*) FROM block WHERE id >= ? AND id < ?");
        sql_Rows rows(statement, sql_RecordFile::BlockPlace(record.id, (record.length + size - 1) / size),
                      sql_RecordFile::BlockPlace(record.id + 1, 0));
        if (rows.Next() && rows.Int(0) != 0) {
            Fault("record " + std::to_string(record.id) + " has " + std::to_string(rows.Int(0)) +
                  " blocks behind its end");
        }
    }

    /// Records that the query names and no root leads to.
    void CheckOrphans(const char* query, const std::string& text)
    {
        sql_Statement statement(m_file.Connection(), query);
        for (sql_Rows rows(statement); rows.Next();) {
            if (!m_seen.contains(rows.Int(0))) {
                std::string fault = text;
                Fault(fault.replace(fault.find('%'), 1, std::to_string(rows.Int(0))));
            }
        }
    }

    sql_RecordFile& m_file;
    std::map<std::int64_t, std::string> m_classes;
    std::set<std::int64_t> m_seen;
    int m_faults = 0;
};
} // namespace

int Check(sql_RecordFile& file)
{
    return Checker(file).Run();
}
