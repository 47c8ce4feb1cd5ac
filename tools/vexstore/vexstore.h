#pragma once

#include "sql_RecordFile.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

// What the commands of vexstore share. Every command returns the program's exit status.

enum Status : int
{
    DONE = 0,
    FOUND = 1,     ///< differences, faults or losses
    MISUSED = 2,   ///< the command line
    UNREADABLE = 3 ///< a file that cannot be opened or read
};

int List(sql_RecordFile& file);
int Show(sql_RecordFile& file, const std::string& what);
int Export(sql_RecordFile& file);
int Diff(sql_RecordFile& left, sql_RecordFile& right);
int Check(sql_RecordFile& file);
int Recover(sql_RecordFile& damaged, const std::string& target);
int Upgrade(sql_RecordFile& file);

/// A bar on standard error, where that is a terminal and the work takes long enough to be looked at.
class Progress
{
public:
    explicit Progress(std::int64_t total);
    ~Progress();
    void Step(std::int64_t count = 1);

private:
    void Draw() const;

    std::int64_t m_total;
    std::int64_t m_done = 0;
    std::int64_t m_shown = -1; // percent
    bool m_isOn;
};

/// How many steps the work on a file has: its records and blocks.
std::int64_t WorkOf(sql_RecordFile& file);

/// `text` without control characters, which a crafted file could steer a terminal with: "\x1b" for them.
std::string Printable(std::string_view text);
/// `text` in a colour (31 red, 32 green, 33 yellow, 36 cyan) where standard output is a terminal.
std::string Coloured(int colour, const std::string& text);

/// The first column of the first row.
std::int64_t Count(sql_RecordFile& file, const char* query);
/// A value on one line; of many items the first few, of a matrix with its shape.
std::string CellText(const sql_Cell& cell);
/// The items of an array or matrix, or of a block of this element kind, each as JSON.
std::vector<std::string> ItemsOf(sql_Kind element, std::string_view bytes);
/// A text as JSON; one that is no UTF-8 as {"hex": "..."}.
std::string Quoted(const cow_String& text);
/// A scalar as JSON.
std::string ScalarText(const sql_Cell& cell);

/// The bytes of a block of a paged list, and how many blocks the list has. A block that is missing throws.
std::string BlockOf(sql_RecordFile& file, const sql_Record& record, std::int64_t block);
std::int64_t BlockCount(const sql_Record& record);

/// Throws where a record stands deeper than any program nests them.
void CheckDepth(sql_RecordFile& file, int depth);
/// A tree of records, parents before children, in the order of their keys. What does not fit together throws.
struct Place
{
    sql_Record record;
    int depth;        ///< 1 for a root
    std::string name; ///< the root's name, or the key in the owner
};
void Walk(sql_RecordFile& file, std::int64_t root, const std::string& name,
          const std::function<void(const Place&)>& visit);
/// The record of an object's cell, which has to belong to `owner`.
sql_Record ChildOf(sql_RecordFile& file, std::int64_t owner, const sql_Cell& cell);
/// "Part version 2", by the row of the class; empty for row 0.
std::map<std::int64_t, std::string> ClassTexts(sql_RecordFile& file);
