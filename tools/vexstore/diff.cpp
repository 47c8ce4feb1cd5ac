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
        : m_left(left), m_right(right), m_leftClasses(ClassTexts(left)), m_rightClasses(ClassTexts(right)),
          m_progress(WorkOf(left))
    {}

    bool HasFound() const noexcept { return m_hasFound; }

    void Compare(const std::string& path, const sql_Record& left, const sql_Record& right, int depth)
    {
        CheckDepth(m_left, depth);
        m_progress.Step();
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
        std::cout << Coloured(colour, mark + Printable(path + ": " + what)) << '\n';
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
            } else if (!(leftRow->second == rightRow->second)) {
                CompareValues(place, leftRow->second, rightRow->second);
            }
            leftRow += isLeft ? 1 : 0;
            rightRow += isRight ? 1 : 0;
        }
    }

    void CompareValues(const std::string& path, const sql_Cell& left, const sql_Cell& right)
    {
        const int code = static_cast<int>(left.kind);
        const auto* const leftText = std::get_if<cow_String>(&left.data);
        const auto* const rightText = std::get_if<cow_String>(&right.data);
        const std::size_t shape = code > static_cast<int>(sql_Kind::MATRIX) ? 2 * sizeof(std::uint32_t) : 0;
        if (code > static_cast<int>(sql_Kind::ARRAY) && left.kind == right.kind &&
            leftText->view().substr(0, shape) == rightText->view().substr(0, shape)) {
            const auto element = static_cast<sql_Kind>(code % 10);
            const auto leftItems = ItemsOf(element, leftText->view().substr(shape));
            const auto rightItems = ItemsOf(element, rightText->view().substr(shape));
            CompareLengths(path, leftItems.size(), rightItems.size());
            CompareItems(path, leftItems, rightItems, 0);
        } else if (TextOf(left) != TextOf(right)) { // by the texts a NaN equals itself
            Changed(path, TextOf(left), TextOf(right));
        }
    }

    void CompareLengths(const std::string& path, std::size_t left, std::size_t right)
    {
        if (left != right) {
            Changed(path, std::to_string(left) + " values", std::to_string(right) + " values");
        }
    }

    /// The items that both have, the first of which has the index `first`.
    void CompareItems(const std::string& path, const std::vector<std::string>& left,
                      const std::vector<std::string>& right, std::int64_t first)
    {
        for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
            if (left[i] != right[i]) {
                Changed(path + "[" + std::to_string(first + static_cast<std::int64_t>(i)) + "]", left[i], right[i]);
            }
        }
    }

    void CompareBlocks(const std::string& path, const sql_Record& left, const sql_Record& right)
    {
        CompareLengths(path, static_cast<std::size_t>(left.length), static_cast<std::size_t>(right.length));
        const sql_Kind element = *sql_PagedKind(left.form);
        for (std::int64_t block = 0; block < std::min(BlockCount(left), BlockCount(right)); ++block) {
            const std::string leftBytes = BlockOf(m_left, left, block);
            const std::string rightBytes = BlockOf(m_right, right, block);
            if (leftBytes != rightBytes) {
                CompareItems(path, ItemsOf(element, leftBytes), ItemsOf(element, rightBytes),
                             block * sql_Records::BLOCK_LENGTH);
            }
            m_progress.Step();
        }
    }

    sql_RecordFile& m_left;
    sql_RecordFile& m_right;
    std::map<std::int64_t, std::string> m_leftClasses;
    std::map<std::int64_t, std::string> m_rightClasses;
    Progress m_progress;
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
