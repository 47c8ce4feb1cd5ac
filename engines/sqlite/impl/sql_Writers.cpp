#include "cls_CollectionWriters.h"
#include "sql_Collections_detail.h"
#include "sql_MementoWrite_detail.h"

namespace
{
/// What every writer of a collection does: its record becomes an empty collection, and gets a row an entry.
template <class Interface> class Writer : public Interface
{
public:
    Writer(const sql_SessionPtr& session, const sql_Session::Open& open, sql_Form form)
        : m_session(session), m_open(open)
    {
        m_session->MakeCollection(*m_open, form);
    }

protected:
    template <class Value> void PutNext(const Value& value) { Put(sql_Key(m_open->next), value); }
    template <class Value> void Put(const sql_Key& key, const Value& value)
    {
        m_session->Put(*m_open, key, sql_ToCell(value));
    }
    std::int64_t Next() const noexcept { return m_open->next; }
    cls_MementoWrite* MakeObject(const sql_Key& key, std::uint32_t classId, const cls_Uid& uid)
    {
        return new sql_MementoWrite(m_session, m_session->OpenAt(m_open, key, classId, uid));
    }

private:
    sql_SessionPtr m_session;
    sql_Session::Open m_open;
};

template <class T> class ListWriter final : public Writer<cls_WriteListPrim<T>>
{
public:
    using Writer<cls_WriteListPrim<T>>::Writer;
    void Append(const T& value) override { this->PutNext(value); }
    void AppendArray(const cow_1DArray<T>& values) override { this->PutNext(values); }
};

template <class T> class IntMapWriter final : public Writer<cls_WriteMapInt2Prim<T>>
{
public:
    using Writer<cls_WriteMapInt2Prim<T>>::Writer;
    void Write(const int& key, const T& value) override { this->Put(sql_Key(std::int64_t{key}), value); }
};

template <class T> class StringMapWriter final : public Writer<cls_WriteMapString2Prim<T>>
{
public:
    using Writer<cls_WriteMapString2Prim<T>>::Writer;
    void Write(const cow_String& key, const T& value) override { this->Put(sql_Key(key), value); }
};

class IntTableWriter final : public Writer<cls_WriteIntTableInt>
{
public:
    using Writer::Writer;
    void Write(int key, int value) override { Put(sql_Key(std::int64_t{key}), value); }
};

class ObjListWriter final : public Writer<cls_WriteListObj>
{
public:
    using Writer::Writer;
    cls_MementoWrite* MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) override
    {
        return MakeObject(sql_Key(Next()), classId, uid);
    }
};

class IntMapObjWriter final : public Writer<cls_WriteMapInt2Obj>
{
public:
    using Writer::Writer;
    cls_MementoWrite* MakeWriteObj(const int& key, std::uint32_t classId, const cls_Uid& uid) override
    {
        return MakeObject(sql_Key(std::int64_t{key}), classId, uid);
    }
};

class StringMapObjWriter final : public Writer<cls_WriteMapString2Obj>
{
public:
    using Writer::Writer;
    cls_MementoWrite* MakeWriteObj(const cow_String& key, std::uint32_t classId, const cls_Uid& uid) override
    {
        return MakeObject(sql_Key(key), classId, uid);
    }
};
} // namespace

template <class T>
cls_WriteListPrim<T>* sql_MakeListWriter(const sql_SessionPtr& session, const sql_Session::Open& open)
{
    return new ListWriter<T>(session, open, sql_Form::LIST + sql_KindOf<T>);
}

template <class T>
cls_WriteMapInt2Prim<T>* sql_MakeIntMapWriter(const sql_SessionPtr& session, const sql_Session::Open& open)
{
    return new IntMapWriter<T>(session, open, sql_Form::INT_MAP + sql_KindOf<T>);
}

template <class T>
cls_WriteMapString2Prim<T>* sql_MakeStringMapWriter(const sql_SessionPtr& session, const sql_Session::Open& open)
{
    return new StringMapWriter<T>(session, open, sql_Form::STRING_MAP + sql_KindOf<T>);
}

cls_WriteListObj* sql_MakeObjListWriter(const sql_SessionPtr& session, const sql_Session::Open& open)
{
    return new ObjListWriter(session, open, sql_Form::LIST + sql_Kind::OBJECT);
}

cls_WriteMapInt2Obj* sql_MakeIntMapObjWriter(const sql_SessionPtr& session, const sql_Session::Open& open)
{
    return new IntMapObjWriter(session, open, sql_Form::INT_MAP + sql_Kind::OBJECT);
}

cls_WriteMapString2Obj* sql_MakeStringMapObjWriter(const sql_SessionPtr& session, const sql_Session::Open& open)
{
    return new StringMapObjWriter(session, open, sql_Form::STRING_MAP + sql_Kind::OBJECT);
}

cls_WriteIntTableInt* sql_MakeIntTableWriter(const sql_SessionPtr& session, const sql_Session::Open& open)
{
    return new IntTableWriter(session, open, sql_Form::INT_TABLE);
}

#define INSTANTIATE_MAPS(N, T)                                                                                         \
    template cls_WriteMapInt2Prim<T>* sql_MakeIntMapWriter(const sql_SessionPtr&, const sql_Session::Open&);           \
    template cls_WriteMapString2Prim<T>* sql_MakeStringMapWriter(const sql_SessionPtr&, const sql_Session::Open&);
#define INSTANTIATE_LISTS(N, T)                                                                                        \
    template cls_WriteListPrim<T>* sql_MakeListWriter(const sql_SessionPtr&, const sql_Session::Open&);
SQL_KINDS(INSTANTIATE_LISTS)
SQL_KEYED_KINDS(INSTANTIATE_MAPS)
#undef INSTANTIATE_LISTS
#undef INSTANTIATE_MAPS
