#include "vexstore.h"

#include <charconv>
#include <iostream>

namespace
{
std::int64_t SizeOf(sql_RecordFile& file, const sql_Record& record)
{
    std::int64_t bytes = 0;
    if (sql_PagedKind(record.form)) {
        for (std::int64_t block = 0; block < BlockCount(record); ++block) {
            bytes += static_cast<std::int64_t>(BlockOf(file, record, block).size());
        }
        return bytes;
    }
    for (const auto& [key, cell] : file.Rows(record.id)) {
        const auto* const text = std::get_if<cow_String>(&cell.data);
        bytes += text != nullptr ? text->Length() : 8;
    }
    return bytes;
}

std::string HeadText(const sql_Record& record, const std::map<std::int64_t, std::string>& classes)
{
    const auto found = classes.find(record.classRow);
    const std::string name = found != classes.end() ? found->second : "class " + std::to_string(record.classRow);
    return (name.empty() ? "" : Printable(name) + ", ") + sql_FormName(record.form) + ", " +
           std::to_string(record.length) + (sql_PagedKind(record.form) ? " values" : " rows");
}
} // namespace

int List(sql_RecordFile& file)
{
    const auto classes = ClassTexts(file);
    for (const auto& [name, id] : file.Roots()) {
        Walk(file, id, std::string(name.view()), [&](const Place& place) {
            std::cout << std::string(static_cast<std::size_t>(place.depth - 1) * 2, ' ')
                      << Coloured(36, Printable(place.name)) << "  #" << place.record.id << "  "
                      << HeadText(place.record, classes) << ", " << SizeOf(file, place.record) << " bytes\n";
        });
    }
    return DONE;
}

int Show(sql_RecordFile& file, const std::string& what)
{
    std::int64_t id = 0;
    if (const auto root = file.FindRoot(what.c_str())) {
        id = *root;
    } else {
        const char* const end = what.data() + what.size();
        id = std::from_chars(what.data(), end, id).ptr == end ? id : 0;
    }
    const auto record = file.FindRecord(id);
    if (!record) {
        std::cerr << "vexstore: '" << file.Name() << "' has no root or record '" << what << "'\n";
        return FOUND;
    }
    std::cout << "record " << id << ": " << HeadText(*record, ClassTexts(file)) << ", owner " << record->owner
              << ", identity " << record->identity << ", revision " << record->revision << '\n';
    for (const auto& [key, cell] : file.Rows(id)) {
        std::cout << "  " << Coloured(36, Printable(key.AsString())) << "  " << sql_KindName(cell.kind) << "  "
                  << CellText(cell) << '\n';
    }
    if (const auto element = sql_PagedKind(record->form)) {
        const sql_Kind kind = sql_Kind::ARRAY + *element;
        for (std::int64_t block = 0; block < BlockCount(*record); ++block) {
            std::cout << "  " << block * sql_Records::BLOCK_LENGTH << ": "
                      << CellText({kind, cow_String(BlockOf(file, *record, block))}) << '\n';
        }
    }
    return DONE;
}

int Upgrade(sql_RecordFile& file)
{
    std::cout << "format: " << Count(file, "PRAGMA user_version") << ", this program writes " << sql_RecordFile::FORMAT
              << ": nothing to convert\n";
    std::map<std::string, int> newest;
    const std::vector<sql_Class> classes = file.Classes();
    for (const sql_Class& stored : classes) {
        int& version = newest[std::string(stored.name.view())];
        version = std::max(version, stored.version);
    }
    for (const sql_Class& stored : classes) {
        const std::string name(stored.name.view());
        if (const std::int64_t count = file.CountRecordsOf(stored.row); count != 0 && stored.version < newest[name]) {
            std::cout << Printable(name) << ": " << count << " objects of version " << stored.version
                      << " become version " << newest[name] << " or newer when they are saved again\n";
        }
    }
    return DONE;
}
