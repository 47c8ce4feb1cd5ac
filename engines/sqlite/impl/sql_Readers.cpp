#include "cls_AgentListPrim.h"
#include "cls_CollectionReaders.h"
#include "sql_Collections_detail.h"
#include "sql_MementoRead_detail.h"

#include <algorithm>
#include <memory>

namespace
{
/// Steps through the rows of a record that is a collection. Objects of classes that this program does not know are left
/// out: who writes the collection again keeps them.
template <class Interface> class Cursor : public Interface
{
public:
    Cursor(sql_NodePtr node, sql_Form form) : m_node(std::move(node))
    {
        const bool isEmpty = m_node->Head().form == sql_Form::OBJECT && m_node->Rows().empty();
        if (m_node->Head().form != form && !isEmpty) {
            m_node->Fail("it is " + sql_FormName(m_node->Head().form) + ", not " + sql_FormName(form));
        }
        for (const sql_Records::Row& row : m_node->Rows()) {
            const sql_NodePtr child = row.second.IsObject() ? m_node->Child(row.second) : nullptr;
            if (child == nullptr || child->IsKnown()) {
                m_entries.push_back({&row, child});
            }
        }
        // Rows come with texts that are not plain at the end; maps are read by their bytes alone.
        std::stable_sort(m_entries.begin(), m_entries.end(), [](const Entry& left, const Entry& right) {
            const sql_Key& leftKey = left.row->first;
            const sql_Key& rightKey = right.row->first;
            return !leftKey.IsNumber() && !rightKey.IsNumber() && leftKey.Text() < rightKey.Text();
        });
    }

protected:
    int Count() const noexcept { return static_cast<int>(m_entries.size()); }
    bool Step() noexcept
    {
        m_next = std::min(m_next + 1, m_entries.size() + 1);
        return m_next <= m_entries.size();
    }
    void StepTo(int index)
    {
        if (index < 0 || index > Count()) {
            m_node->Fail("there is no entry " + std::to_string(index));
        }
        m_next = static_cast<std::size_t>(index);
    }
    const sql_Records::Row& Row() const { return *Now().row; }
    const sql_NodePtr& Object() const { return Now().child; }
    template <class T> T CellAs() const
    {
        T value{};
        if (!sql_FromCell(Row().second, value)) {
            m_node->FailKind(Row().first, Row().second, sql_KindOf<T>);
        }
        return value;
    }
    int IntKey() const
    {
        int key = 0;
        if (!Row().first.IsNumber() || !sql_FromCell({sql_Kind::INT, Row().first.Number()}, key)) {
            m_node->Fail("the key " + Row().first.AsString() + " is no int");
        }
        return key;
    }
    cow_String TextKey() const
    {
        if (Row().first.IsNumber()) {
            m_node->Fail("the key " + Row().first.AsString() + " is no text");
        }
        return Row().first.Text();
    }
    std::uint32_t ObjectClass() const
    {
        return Object() != nullptr && Object()->Class() != nullptr ? Object()->Class()->classId : 0;
    }
    cls_MementoRead* ObjectReader() const { return Object() != nullptr ? new sql_MementoRead(Object()) : nullptr; }

    sql_NodePtr m_node;

private:
    struct Entry
    {
        const sql_Records::Row* row; // of the node
        sql_NodePtr child;           // null for a value
    };

    const Entry& Now() const
    {
        if (m_next == 0 || m_next > m_entries.size()) {
            m_node->Fail("the reader stands at no entry");
        }
        return m_entries[m_next - 1];
    }

    std::vector<Entry> m_entries;
    std::size_t m_next = 0; // entries stepped over
};

template <class T> class ListReader final : public Cursor<cls_ReadListPrim<T>>
{
public:
    explicit ListReader(sql_NodePtr node) : Cursor<cls_ReadListPrim<T>>(std::move(node), sql_Form::LIST + sql_KindOf<T>)
    {}

    int Size() override { return this->Count(); }
    bool Next() override { return this->Step(); }
    void Seek(int index) override { this->StepTo(index); }
    T Value() override
    {
        if (this->Row().second.kind == sql_KindOf<T>) {
            return this->template CellAs<T>();
        }
        const cow_1DArray<T> values = Array();
        if (values.Length() != 1) {
            this->m_node->Fail("entry " + this->Row().first.AsString() + " is no single value");
        }
        return values[0];
    }
    cow_1DArray<T> Array() override
    {
        cow_1DArray<T> values;
        if (!sql_FromCell(this->Row().second, values)) {
            values.Append(this->template CellAs<T>());
        }
        return values;
    }
};

/// A list that an array has stored in blocks, read value by value.
template <class T> class PagedReader final : public cls_ReadListPrim<T>
{
public:
    explicit PagedReader(sql_NodePtr node)
        : m_node(std::move(node)),
          m_agent(sql_MakeListAgent<T>(m_node->Session(), m_node->Head().id, cls_Uid::AllocateUid(), /*isFirst=*/false))
    {}

    int Size() override { return m_agent->Size(); }
    bool Next() override
    {
        m_next = std::min(m_next + 1, Size() + 1);
        return m_next <= Size();
    }
    void Seek(int index) override
    {
        if (index < 0 || index > Size()) {
            m_node->Fail("there is no entry " + std::to_string(index));
        }
        m_next = index;
    }
    T Value() override
    {
        if (m_next == 0 || m_next > Size()) {
            m_node->Fail("the reader stands at no entry");
        }
        const int index = m_next - 1;
        if (m_first < 0 || index < m_first || index - m_first >= sql_Records::BLOCK_LENGTH) {
            m_first = -1;
            const int first = index / sql_Records::BLOCK_LENGTH * sql_Records::BLOCK_LENGTH;
            m_agent->ReadRange(first, std::min(sql_Records::BLOCK_LENGTH, Size() - first), m_block.get());
            m_first = first;
        }
        return m_block[static_cast<std::size_t>(index - m_first)];
    }
    cow_1DArray<T> Array() override { return {Value()}; }

private:
    sql_NodePtr m_node;
    std::unique_ptr<cls_AgentListPrim<T>> m_agent;
    std::unique_ptr<T[]> m_block = std::make_unique<T[]>(sql_Records::BLOCK_LENGTH);
    int m_first = -1; // of the block in memory
    int m_next = 0;
};

template <class T, class Interface, class KeyType> class MapReader final : public Cursor<Interface>
{
public:
    MapReader(sql_NodePtr node, sql_Form form) : Cursor<Interface>(std::move(node), form) {}

    int Size() override { return this->Count(); }
    bool Next() override { return this->Step(); }
    KeyType Key() override
    {
        if constexpr (std::is_same_v<KeyType, int>) {
            return this->IntKey();
        } else {
            return this->TextKey();
        }
    }
    T Value() override { return this->template CellAs<T>(); }
};

class ObjListReader final : public Cursor<cls_ReadListObj>
{
public:
    using Cursor::Cursor;
    int Size() override { return Count(); }
    bool Next() override { return Step(); }
    std::uint32_t ClassId() override { return ObjectClass(); }
    cls_MementoRead* MakeReader() override { return ObjectReader(); }
    void Seek(int index) override { StepTo(index); }
};

class IntMapObjReader final : public Cursor<cls_ReadMapInt2Obj>
{
public:
    using Cursor::Cursor;
    bool Next() override { return Step(); }
    int Key() override { return IntKey(); }
    std::uint32_t ClassId() override { return ObjectClass(); }
    cls_MementoRead* MakeReader() override { return ObjectReader(); }
};

class StringMapObjReader final : public Cursor<cls_ReadMapString2Obj>
{
public:
    using Cursor::Cursor;
    bool Next() override { return Step(); }
    cow_String Key() override { return TextKey(); }
    std::uint32_t ClassId() override { return ObjectClass(); }
    cls_MementoRead* MakeReader() override { return ObjectReader(); }
};

template <class Reader, class... Arguments> Reader* Make(const sql_NodePtr& node, Arguments... arguments)
{
    return node != nullptr ? new Reader(node, arguments...) : nullptr;
}
} // namespace

template <class T> cls_ReadListPrim<T>* sql_MakeListReader(const sql_NodePtr& node)
{
    if (node != nullptr && sql_PagedKind(node->Head().form)) {
        return new PagedReader<T>(node);
    }
    return Make<ListReader<T>>(node);
}

template <class T> cls_ReadMapInt2Prim<T>* sql_MakeIntMapReader(const sql_NodePtr& node)
{
    return Make<MapReader<T, cls_ReadMapInt2Prim<T>, int>>(node, sql_Form::INT_MAP + sql_KindOf<T>);
}

template <class T> cls_ReadMapString2Prim<T>* sql_MakeStringMapReader(const sql_NodePtr& node)
{
    return Make<MapReader<T, cls_ReadMapString2Prim<T>, cow_String>>(node, sql_Form::STRING_MAP + sql_KindOf<T>);
}

cls_ReadListObj* sql_MakeObjListReader(const sql_NodePtr& node)
{
    return Make<ObjListReader>(node, sql_Form::LIST + sql_Kind::OBJECT);
}

cls_ReadMapInt2Obj* sql_MakeIntMapObjReader(const sql_NodePtr& node)
{
    return Make<IntMapObjReader>(node, sql_Form::INT_MAP + sql_Kind::OBJECT);
}

cls_ReadMapString2Obj* sql_MakeStringMapObjReader(const sql_NodePtr& node)
{
    return Make<StringMapObjReader>(node, sql_Form::STRING_MAP + sql_Kind::OBJECT);
}

cls_ReadIntTableInt* sql_MakeIntTableReader(const sql_NodePtr& node)
{
    return Make<MapReader<int, cls_ReadIntTableInt, int>>(node, sql_Form::INT_TABLE);
}

#define INSTANTIATE_MAPS(N, T)                                                                                         \
    template cls_ReadMapInt2Prim<T>* sql_MakeIntMapReader<T>(const sql_NodePtr&);                                      \
    template cls_ReadMapString2Prim<T>* sql_MakeStringMapReader<T>(const sql_NodePtr&);
#define INSTANTIATE_LISTS(N, T) template cls_ReadListPrim<T>* sql_MakeListReader<T>(const sql_NodePtr&);
SQL_KINDS(INSTANTIATE_LISTS)
SQL_KEYED_KINDS(INSTANTIATE_MAPS)
#undef INSTANTIATE_LISTS
#undef INSTANTIATE_MAPS
