#include "vexstore.h"

#include <iostream>

namespace
{
/// Writes records as JSON. The depth of records is limited, as for those who read them.
class Exporter
{
public:
    explicit Exporter(sql_RecordFile& file) : m_file(file), m_classes(ClassTexts(file)), m_progress(WorkOf(file)) {}

    void Write(const sql_Record& record, int depth)
    {
        CheckDepth(m_file, depth);
        m_progress.Step();
        std::cout << "{\"record\": " << record.id;
        if (record.classRow != 0) {
            std::cout << ", \"class\": " << Quoted(m_classes[record.classRow].c_str());
        }
        std::cout << ", \"form\": \"" << sql_FormName(record.form) << '"';
        if (const auto element = sql_PagedKind(record.form)) {
            WriteBlocks(record, *element);
        } else {
            WriteRows(record, depth);
        }
        std::cout << '}';
    }

private:
    void WriteBlocks(const sql_Record& record, sql_Kind element)
    {
        std::cout << ", \"values\": [";
        const char* separator = "";
        for (std::int64_t block = 0; block < BlockCount(record); ++block) {
            for (const std::string& item : ItemsOf(element, BlockOf(m_file, record, block))) {
                std::cout << std::exchange(separator, ", ") << item;
            }
            m_progress.Step();
        }
        std::cout << ']';
    }

    void WriteRows(const sql_Record& record, int depth)
    {
        std::cout << ", \"rows\": [";
        const char* separator = "";
        for (const auto& [key, cell] : m_file.Rows(record.id)) {
            std::cout << std::exchange(separator, ", ")
                      << "{\"key\": " << (key.IsNumber() ? std::to_string(key.Number()) : Quoted(key.Text()))
                      << ", \"kind\": \"" << sql_KindName(cell.kind) << "\", ";
            if (cell.IsObject()) {
                std::cout << "\"object\": ";
                Write(ChildOf(m_file, record.id, cell), depth + 1);
            } else {
                WriteValue(cell);
            }
            std::cout << '}';
        }
        std::cout << ']';
    }

    static void WriteValue(const sql_Cell& cell)
    {
        const int code = static_cast<int>(cell.kind);
        if (code < static_cast<int>(sql_Kind::ARRAY)) {
            std::cout << "\"value\": " << ScalarText(cell);
            return;
        }
        std::string_view bytes = std::get<cow_String>(cell.data);
        if (code > static_cast<int>(sql_Kind::MATRIX)) {
            const auto shape = ItemsOf(sql_Kind::UNSIGNED, bytes.substr(0, 2 * sizeof(std::uint32_t)));
            std::cout << "\"shape\": [" << shape[0] << ", " << shape[1] << "], ";
            bytes.remove_prefix(2 * sizeof(std::uint32_t));
        }
        std::cout << "\"values\": [";
        const char* separator = "";
        for (const std::string& item : ItemsOf(static_cast<sql_Kind>(code % 10), bytes)) {
            std::cout << std::exchange(separator, ", ") << item;
        }
        std::cout << ']';
    }

    sql_RecordFile& m_file;
    std::map<std::int64_t, std::string> m_classes;
    Progress m_progress;
};
} // namespace

int Export(sql_RecordFile& file)
{
    Exporter exporter(file);
    std::cout << "{\"format\": " << sql_RecordFile::FORMAT << ", \"roots\": [";
    const char* separator = "\n";
    for (const auto& [name, id] : file.Roots()) {
        std::cout << std::exchange(separator, ",\n") << "{\"name\": " << Quoted(name) << ", \"object\": ";
        exporter.Write(ChildOf(file, 0, {sql_Kind::OBJECT, id}), 1);
        std::cout << '}';
    }
    std::cout << "\n]}\n";
    return DONE;
}
