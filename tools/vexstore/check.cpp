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
        if (const std::string why = m_file.Truncation(); !why.empty()) {
            Fault("the file " + why);
        }
        Step([&] { CheckPages(); });
        Step([&] { m_file.LowestReader(); });
        Step([&] { m_file.LowestWriter(); });
        Step([&] { m_file.NextNumber(); });
        Step([&] { CheckTrees(); });
        Step([&] { CheckOrphans("SELECT id FROM record", "record %: no root leads to it"); });
        Step([&] { CheckOrphans("SELECT DISTINCT record FROM field", "the fields of record %: it is missing"); });
        Step([&] { CheckOrphans("SELECT DISTINCT id >> 20 FROM block", "the blocks of record %: it is missing"); });
        std::cout << Printable(m_file.Name()) << ": " << m_seen.size() << " records, "
                  << (m_faults == 0 ? Coloured(32, "no faults") : Coloured(31, std::to_string(m_faults) + " faults"))
                  << '\n';
        return m_faults == 0 ? DONE : FOUND;
    }

private:
    void Fault(const std::string& what)
    {
        ++m_faults;
        std::cout << Coloured(31, "fault: ") << Printable(what) << '\n';
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
        Progress progress(WorkOf(m_file));
        for (const auto& [name, id] : m_file.Roots()) {
            std::vector<Place> left;
            Step([&] { left.push_back({ChildOf(m_file, 0, {sql_Kind::OBJECT, id}), 1, {}}); });
            while (!left.empty()) {
                const Place place = std::move(left.back());
                left.pop_back();
                if (m_seen.insert(place.record.id).second) {
                    progress.Step();
                    Step([&] { CheckRecord(place, left, progress); });
                } else {
                    Fault("record " + std::to_string(place.record.id) + ": two roots lead to it");
                }
            }
        }
    }

    void CheckRecord(const Place& place, std::vector<Place>& left, Progress& progress)
    {
        const sql_Record& record = place.record;
        CheckDepth(m_file, place.depth);
        if (!m_classes.contains(record.classRow)) {
            Fault("record " + std::to_string(record.id) + ": its class " + std::to_string(record.classRow) +
                  " is missing");
        }
        if (const auto element = sql_PagedKind(record.form)) {
            CheckBlocks(record, *element, progress);
            return;
        }
        const auto rows = m_file.Rows(record.id);
        if (static_cast<std::int64_t>(rows.size()) != record.length) {
            Fault("record " + std::to_string(record.id) + " has " + std::to_string(rows.size()) + " of " +
                  std::to_string(record.length) + " rows");
        }
        for (const auto& [key, cell] : rows) {
            if (cell.IsObject()) {
                Step([&] { left.push_back({ChildOf(m_file, record.id, cell), place.depth + 1, {}}); });
            }
        }
    }

    void CheckBlocks(const sql_Record& record, sql_Kind element, Progress& progress)
    {
        const std::int64_t count = BlockCount(record);
        std::int64_t next = 0;
        std::int64_t behind = 0;
        sql_Statement statement(m_file.Connection(), "SELECT id FROM block WHERE id >= ? AND id < ? ORDER BY id");
        for (sql_Rows rows(statement, sql_RecordFile::BlockPlace(record.id, 0),
                           sql_RecordFile::BlockPlace(record.id + 1, 0));
             rows.Next(); progress.Step()) {
            const std::int64_t block = rows.Int(0) - sql_RecordFile::BlockPlace(record.id, 0);
            if (block >= count) {
                ++behind;
                continue;
            }
            CheckMissing(record, next, block);
            next = block + 1;
            Step([&] { CheckBlock(record, element, block); });
        }
        CheckMissing(record, next, count);
        if (behind != 0) {
            Fault("record " + std::to_string(record.id) + " has " + std::to_string(behind) + " blocks behind its end");
        }
    }

    /// Blocks from `first` on, up to the one at `end`, of which there is none.
    void CheckMissing(const sql_Record& record, std::int64_t first, std::int64_t end)
    {
        if (first < end) {
            Fault(end - first == 1
                      ? "block " + std::to_string(first) + " of record " + std::to_string(record.id) + " is missing"
                      : "blocks " + std::to_string(first) + " to " + std::to_string(end - 1) + " of record " +
                            std::to_string(record.id) + " are missing");
        }
    }

    void CheckBlock(const sql_Record& record, sql_Kind element, std::int64_t block)
    {
        const std::int64_t size = sql_Records::BLOCK_LENGTH;
        const auto expected = static_cast<std::size_t>(std::min(size, record.length - block * size));
        if (ItemsOf(element, BlockOf(m_file, record, block)).size() != expected) {
            Fault("block " + std::to_string(block) + " of record " + std::to_string(record.id) + " does not hold " +
                  std::to_string(expected) + " values");
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
