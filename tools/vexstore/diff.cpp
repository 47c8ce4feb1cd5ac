#include "vexstore.h"

#include <iostream>
#include <optional>

namespace
{
/// Compares two trees of records place by place, and says only what differs.
class Differ
{
public:
    Differ(sql_RecordFile& left, sql_RecordFile& right)
        : m_left(left), m_right(right), m_leftClasses(ClassTexts(left)), m_rightClasses(ClassTexts(right))
    {}

    bool HasFound() const noexcept { return m_hasFound; }

    void Compare(const std::string& path, const sql_Record& left, const sql_Record& right, int depth)
    {
        if (depth > sql_Records::MAX_DEPTH) {
            m_left.FailDamaged("records are nested deeper than " + std::to_string(sql_Records::MAX_DEPTH));
        }
        const std::string leftText = Head(left, m_leftClasses);
        const std::string rightText = Head(right, m_rightClasses);
        if (leftText != rightText) {
            Changed(path, leftText, rightText);
        }
        if (sql_PagedKind(left.form) && left.form == right.form) {
            CompareBlocks(path, left, right);
        } else {
            CompareRows(path, left, right, depth);
        }
    }

    void Removed(const std::string& path, const std::string& what) { Say(31, "- ", path, what); }
    void Added(const std::string& path, const std::string& what) { Say(32, "+ ", path, what); }

private:
    void Changed(const std::string& path, const std::string& from, const std::string& to)
    {
        Say(33, "~ ", path, from + " -> " + to);
    }
    void Say(int colour, const char* mark, const std::string& path, const std::string& what)
    {
        m_hasFound = true;
        std::cout << Coloured(colour, mark + path + ": " + what) << '\n';
    }
    static std::string Head(const sql_Record& record, std::map<std::int64_t, std::string>& classes)
    {
        const std::string& name = classes[record.classRow];
        return name.empty() ? sql_FormName(record.form) : name + ", " + sql_FormName(record.form);
    }
    static std::string TextOf(const sql_Cell& cell)
    {
        return cell.IsObject() ? "object" : sql_KindName(cell.kind) + " " + CellText(cell);
    }

    void CompareRows(const std::string& path, const sql_Record& left, const sql_Record& right, int depth)
    {
        const auto leftRows = m_left.Rows(left.id);
        const auto rightRows = m_right.Rows(right.id);
        auto leftRow = leftRows.begin();
        auto rightRow = rightRows.begin();
        while (leftRow != leftRows.end() || rightRow != rightRows.end()) {
            const bool isLeft =
                rightRow == rightRows.end() || (leftRow != leftRows.end() && leftRow->first <= rightRow->first);
            const bool isRight =
                leftRow == leftRows.end() || (rightRow != rightRows.end() && rightRow->first <= leftRow->first);
            const sql_Key& key = isLeft ? leftRow->first : rightRow->first;
            const std::string place =
                path + (key.IsNumber() ? "[" + key.AsString() + "]" : "." + std::string(key.Text().view()));
            if (!isRight) {
                Removed(place, TextOf(leftRow->second));
            } else if (!isLeft) {
                Added(place, TextOf(rightRow->second));
            } else if (leftRow->second.IsObject() && rightRow->second.IsObject()) {
                Compare(place, ChildOf(m_left, left.id, leftRow->second), ChildOf(m_right, right.id, rightRow->second),
                        depth + 1);
            } else if (!(leftRow->second == rightRow->second) && sql_RecordFile::SumOf(0, key, leftRow->second) !=
                                                                     sql_RecordFile::SumOf(0, key, rightRow->second)) {
                Changed(place, TextOf(leftRow->second), TextOf(rightRow->second)); // by the sums a NaN equals itself
            }
            leftRow += isLeft ? 1 : 0;
            rightRow += isRight ? 1 : 0;
        }
    }

    void CompareBlocks(const std::string& path, const sql_Record& left, const sql_Record& right)
    {
        if (left.length != right.length) {
            Changed(path, std::to_string(left.length) + " values", std::to_string(right.length) + " values");
        }
        const sql_Kind element = *sql_PagedKind(left.form);
        for (std::int64_t block = 0; block * sql_Records::BLOCK_LENGTH < std::min(left.length, right.length); ++block) {
            const std::string leftBytes = BlockOf(m_left, left, block);
            const std::string rightBytes = BlockOf(m_right, right, block);
            if (leftBytes == rightBytes) {
                continue;
            }
            const auto leftItems = ItemsOf(element, leftBytes);
            const auto rightItems = ItemsOf(element, rightBytes);
            for (std::size_t i = 0; i < std::min(leftItems.size(), rightItems.size()); ++i) {
                if (leftItems[i] != rightItems[i]) {
                    const auto index = block * sql_Records::BLOCK_LENGTH + static_cast<std::int64_t>(i);
                    Changed(path + "[" + std::to_string(index) + "]", leftItems[i], rightItems[i]);
                }
            }
        }
    }

    static std::string BlockOf(sql_RecordFile& file, const sql_Record& record, std::int64_t block)
    {
        std::string bytes;
        if (!file.ReadBlock(record.id, block, [&](std::string_view read) { bytes = read; })) {
            file.FailDamaged("block " + std::to_string(block) + " of record " + std::to_string(record.id) +
                             " is missing");
        }
        return bytes;
    }

    sql_RecordFile& m_left;
    sql_RecordFile& m_right;
    std::map<std::int64_t, std::string> m_leftClasses;
    std::map<std::int64_t, std::string> m_rightClasses;
    bool m_hasFound = false;
};
} // namespace

int Diff(sql_RecordFile& left, sql_RecordFile& right)
{
    Differ differ(left, right);
    for (const auto& [name, id] : left.Roots()) {
        const std::string path(name.view());
        const sql_Record record = ChildOf(left, 0, {sql_Kind::OBJECT, id});
        if (const auto other = right.FindRoot(name)) {
            differ.Compare(path, record, ChildOf(right, 0, {sql_Kind::OBJECT, *other}), 1);
        } else {
            differ.Removed(path, "root");
        }
    }
    for (const auto& [name, id] : right.Roots()) {
        if (!left.FindRoot(name)) {
            differ.Added(std::string(name.view()), "root");
        }
    }
    return differ.HasFound() ? FOUND : DONE;
}
