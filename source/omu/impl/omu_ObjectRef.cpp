#include "omu_ObjectRef.h"

#include "omu_AccessErrorException.h"
#include "omu_LifeToken_detail.h"

#include <memory>
#include <utility>

omu_ObjectRef::omu_ObjectRef(omu_InterfaceObj& object) : omu_InterfaceObj(object.Resolve())
{
    omu_InterfaceObj& target = object.Resolve();
    if (target.m_life == nullptr) {
        auto life = std::make_unique<omu_LifeToken>();
        life->target = &target;
        life->name = target.Repr(); // what leads to it; the text of a repository is what is in it
        target.m_life = life.release();
    }
    m_token = target.m_life;
    m_token->holders.Raise();
    m_isReference = true;
}

omu_ObjectRef::omu_ObjectRef(const omu_ObjectRef& other) noexcept : omu_InterfaceObj(other), m_token(other.m_token)
{
    m_token->holders.Raise();
    m_isReference = true;
}

omu_ObjectRef& omu_ObjectRef::operator=(const omu_ObjectRef& other) noexcept
{
    omu_InterfaceObj::operator=(other);
    other.m_token->holders.Raise();
    omu_ReleaseLife(std::exchange(m_token, other.m_token));
    return *this;
}

omu_ObjectRef::~omu_ObjectRef()
{
    omu_ReleaseLife(m_token);
}

bool omu_ObjectRef::IsAlive() const noexcept
{
    return m_token->target != nullptr;
}

omu_InterfaceObj& omu_ObjectRef::Target() const
{
    if (m_token->target == nullptr) {
        omu_AccessErrorException(m_token->name).Throw("source/omu/impl/omu_ObjectRef", __LINE__);
    }
    return *m_token->target;
}

cow_String omu_ObjectRef::TypeString() const
{
    // Also of an object that is gone: an error text that names the type must not fail itself.
    return ExposedTypeName();
}

cow_String omu_ObjectRef::AsString(int depth) const
{
    return Target().AsString(depth);
}

void omu_ObjectRef::Accept(omu_PrimVisitor* visitor) const
{
    Target().Accept(visitor);
}

omu_Primitive* omu_ObjectRef::Copy() const
{
    return new omu_ObjectRef(*this);
}

std::uint32_t omu_ObjectRef::DynTypeId() const
{
    return TypeId();
}

bool omu_ObjectRef::IsMethod(const char* name, bool& deprecated)
{
    return Target().IsMethod(name, deprecated);
}

omu_Primitive* omu_ObjectRef::CallMethod(const char* objectName, const char* methodName, omu_Arguments& arguments,
                                         bool& deprecated)
{
    return Target().CallMethod(objectName, methodName, arguments, deprecated);
}

omu_Primitive* omu_ObjectRef::GetMember(const char* name, bool& deprecated)
{
    return Target().GetMember(name, deprecated);
}

omu_Primitive* omu_ObjectRef::SetMember(const char* name, omu_Arguments& arguments, bool& deprecated)
{
    return Target().SetMember(name, arguments, deprecated);
}

bool omu_ObjectRef::DeleteMember(const cow_String& name)
{
    return Target().DeleteMember(name);
}

cow_List<cow_String> omu_ObjectRef::MemberList() const
{
    return Target().MemberList();
}

cow_List<cow_String> omu_ObjectRef::MethodList() const
{
    return Target().MethodList();
}

cow_String omu_ObjectRef::Repr() const
{
    return Target().Repr();
}

cow_String omu_ObjectRef::FullRepr() const
{
    return Target().FullRepr();
}

cow_String omu_ObjectRef::JournalVariable() const
{
    return Target().JournalVariable();
}

cow_String omu_ObjectRef::CommandPath(const cow_String& objectPath, const cow_String& methodName,
                                      omu_Arguments& arguments) const
{
    return Target().CommandPath(objectPath, methodName, arguments);
}

omu_Primitive* omu_ObjectRef::Coerce(omu_Arguments& arguments)
{
    return Target().Coerce(arguments);
}

omu_Primitive* omu_ObjectRef::Cast(omu_Arguments& arguments)
{
    return Target().Cast(arguments);
}

omu_Primitive* omu_ObjectRef::Absolute()
{
    return Target().Absolute();
}

omu_Primitive* omu_ObjectRef::AddOperation(omu_InterfaceObj* other)
{
    return Target().AddOperation(other);
}

omu_Primitive* omu_ObjectRef::SubOperation(omu_InterfaceObj* other)
{
    return Target().SubOperation(other);
}

omu_Primitive* omu_ObjectRef::MulOperation(omu_InterfaceObj* other)
{
    return Target().MulOperation(other);
}

omu_Primitive* omu_ObjectRef::DivOperation(omu_InterfaceObj* other)
{
    return Target().DivOperation(other);
}

omu_Primitive* omu_ObjectRef::UnaryNegative()
{
    return Target().UnaryNegative();
}

int omu_ObjectRef::NonZero() const
{
    return Target().NonZero();
}

const omu_PrimWrapper* omu_ObjectRef::ConstGetWrapper() const
{
    return Target().ConstGetWrapper();
}
