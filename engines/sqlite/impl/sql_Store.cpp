#include "sql_Store.h"

#include "cls_AgentRequest.h"
#include "cls_ClassMetadata.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "nex_TextException.h"
#include "sql_MementoRead_detail.h"
#include "sql_MementoWrite_detail.h"
#include "sql_ReadScope_detail.h"
#include "sql_RecordFile.h"

namespace
{
constexpr const char* SOURCE = "engines/sqlite/impl/sql_Store";

sql_Store OpenFile(const std::string& file, sql_RecordFile::Mode mode, const cls_ClassRegistrar& registrar,
                   int busyMilliseconds)
{
    return {std::make_unique<sql_RecordFile>(file, mode, busyMilliseconds), registrar};
}

/// Asks for the record of a root when the object starts to write.
class RootRequest final : public cls_AgentRequest
{
public:
    RootRequest(sql_SessionPtr session, const cow_String& name) : m_session(std::move(session)), m_name(name) {}

    cls_MementoWrite* MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const override
    {
        return new sql_MementoWrite(m_session, m_session->OpenRoot(m_name, classId, uid));
    }

private:
    sql_SessionPtr m_session;
    cow_String m_name;
};

sql_NodePtr RootNode(const sql_SessionPtr& session, const cow_String& name)
{
    session->FinishClosed();
    sql_NodePtr node = sql_ReadNode::Root(session, name);
    if (node == nullptr) {
        const std::string text = "'" + session->Reading().Name() + "' has no root '" + std::string(name.view()) + "'";
        nex_TextException(text.c_str()).Throw(SOURCE, __LINE__);
    }
    return node;
}
} // namespace

// Defined for users of the DLL who bind references to it.
constexpr int sql_Store::BUSY_MILLISECONDS;

sql_Store sql_Store::Create(const std::string& file, const cls_ClassRegistrar& registrar, int busyMilliseconds)
{
    return OpenFile(file, sql_RecordFile::Mode::CREATE, registrar, busyMilliseconds);
}

sql_Store sql_Store::Open(const std::string& file, const cls_ClassRegistrar& registrar, int busyMilliseconds)
{
    return OpenFile(file, sql_RecordFile::Mode::READ_WRITE, registrar, busyMilliseconds);
}

sql_Store sql_Store::OpenReadOnly(const std::string& file, const cls_ClassRegistrar& registrar, int busyMilliseconds)
{
    return OpenFile(file, sql_RecordFile::Mode::READ_ONLY, registrar, busyMilliseconds);
}

sql_Store::sql_Store(std::unique_ptr<sql_Records> records, const cls_ClassRegistrar& registrar)
    : m_session(std::make_shared<sql_Session>(std::move(records), registrar))
{}

sql_Store::sql_Store(sql_Store&& other) noexcept = default;

sql_Store& sql_Store::operator=(sql_Store&& other) noexcept
{
    std::swap(m_session, other.m_session);
    return *this;
}

sql_Store::~sql_Store()
{
    if (m_session != nullptr) {
        m_session->Close();
    }
}

void sql_Store::SetCacheBytes(std::size_t bytes)
{
    m_session->SetCacheBytes(bytes);
}

void sql_Store::Begin()
{
    m_session->Begin();
}

void sql_Store::Commit()
{
    m_session->Commit();
}

void sql_Store::Rollback()
{
    m_session->Rollback();
}

bool sql_Store::InTransaction() const noexcept
{
    return m_session->InTransaction();
}

void sql_Store::WriteRoot(const cow_String& name, const WriteFn& write)
{
    m_session->BeginSave();
    try {
        write(cls_WriteVisitor(RootRequest(m_session, name)));
        m_session->EndSave();
    } catch (...) {
        m_session->Rollback();
        throw;
    }
}

void sql_Store::Read(const ReadFn& read)
{
    const sql_ReadScope scope(m_session->Reading());
    read();
}

void* sql_Store::ReadRoot(const cow_String& name)
{
    const sql_ReadScope scope(m_session->Reading());
    const sql_NodePtr node = RootNode(m_session, name);
    const sql_ClassPtr& known = node->Class();
    if (known == nullptr || known->metadata == nullptr || known->metadata->Ctor() == nullptr) {
        node->Fail("this program cannot build its class, " +
                   (known != nullptr
                        ? std::string(known->stored.name.view()) + " version " + std::to_string(known->stored.version)
                        : "which has no name"));
    }
    cls_ReadVisitor visitor(new sql_MementoRead(node));
    return known->metadata->Ctor()(visitor);
}

cls_MementoRead* sql_Store::OpenRoot(const cow_String& name)
{
    const sql_ReadScope scope(m_session->Reading());
    return new sql_MementoRead(RootNode(m_session, name));
}

std::uint32_t sql_Store::RootClass(const cow_String& name)
{
    const sql_ReadScope scope(m_session->Reading());
    const sql_NodePtr node = RootNode(m_session, name);
    return node->Class() != nullptr && node->IsKnown() ? node->Class()->classId : 0;
}

bool sql_Store::RemoveRoot(const cow_String& name)
{
    m_session->BeginSave(); // what agents have written must be in the tables to be removed from them
    sql_Records& records = m_session->Writing();
    const auto record = records.FindRoot(name);
    if (record) {
        records.RemoveRoot(name);
        m_session->RemoveTree(*record);
    }
    return record.has_value();
}

std::vector<cow_String> sql_Store::Roots()
{
    std::vector<cow_String> names;
    for (const auto& [name, record] : m_session->Reading().Roots()) {
        names.push_back(name);
    }
    return names;
}

std::vector<std::string> sql_Store::UnknownClasses()
{
    const sql_ReadScope scope(m_session->Reading());
    return m_session->UnknownClasses();
}
