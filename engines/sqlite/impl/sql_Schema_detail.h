#pragma once

/// The statements that make a store, one a table or view, in the order of sqlite_schema. The text is part of the format:
/// a file whose tables were made by another text is no store.
namespace sql_detail
{
struct Definition
{
    const char* name;
    const char* text;
};

inline constexpr Definition SCHEMA[] = {
    {"setting", "CREATE TABLE setting(name TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID"},
    {"class", "CREATE TABLE class(id INTEGER PRIMARY KEY, name TEXT NOT NULL, version INTEGER NOT NULL, "
              "type INTEGER NOT NULL, checksum INTEGER NOT NULL)"},
    {"attribute", "CREATE TABLE attribute(class INTEGER NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL, "
                  "count INTEGER NOT NULL, collection INTEGER NOT NULL, PRIMARY KEY(class, name)) WITHOUT ROWID"},
    {"record", "CREATE TABLE record(id INTEGER PRIMARY KEY, class INTEGER NOT NULL, owner INTEGER NOT NULL, "
               "identity INTEGER NOT NULL, form INTEGER NOT NULL, length INTEGER NOT NULL, revision INTEGER NOT NULL, "
               "checksum INTEGER NOT NULL)"},
    {"field", "CREATE TABLE field(record INTEGER NOT NULL, key NOT NULL, kind INTEGER NOT NULL, value NOT NULL, "
              "checksum INTEGER NOT NULL, PRIMARY KEY(record, key)) WITHOUT ROWID"},
    {"block", "CREATE TABLE block(id INTEGER PRIMARY KEY, checksum INTEGER NOT NULL, data BLOB NOT NULL)"},
    {"root", "CREATE TABLE root(name TEXT PRIMARY KEY, record INTEGER NOT NULL, checksum INTEGER NOT NULL) "
             "WITHOUT ROWID"},
    {"kind", "CREATE TABLE kind(id INTEGER PRIMARY KEY, name TEXT NOT NULL)"},
    {"form", "CREATE TABLE form(id INTEGER PRIMARY KEY, name TEXT NOT NULL)"},
    {"records",
     "CREATE VIEW records AS SELECT record.id, class.name AS class, class.version, form.name AS form, length, "
     "owner, identity, revision FROM record LEFT JOIN class ON class.id = record.class "
     "LEFT JOIN form ON form.id = record.form"},
    {"fields", "CREATE VIEW fields AS SELECT record, key, kind.name AS kind, CASE WHEN kind > 7 THEN length(value) || "
               "' bytes' ELSE value END AS value FROM field LEFT JOIN kind ON kind.id = field.kind"},
    {"blocks", "CREATE VIEW blocks AS SELECT id >> 20 AS record, (id & 1048575) * 2048 AS first, length(data) AS bytes "
               "FROM block"},
};
} // namespace sql_detail
