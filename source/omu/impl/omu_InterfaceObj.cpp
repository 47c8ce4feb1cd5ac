#include "omu_InterfaceObj.h"

#include "VEXCRT.h"
#include "nex_TextException.h"
#include "omi_Singleton.h"
#include "omu_Arguments.h"
#include "omu_BackwardCompat.h"
#include "omu_LifeToken_detail.h"
#include "omu_MethodCall.h"
#include "omu_ObjectRef.h"
#include "omu_PrimVisitor.h"
#include "omu_TextLimits_detail.h"
#include "omu_TypeLevels_detail.h"
#include "omu_TypeRegistryCache.h"

#include <memory>
#include <string>

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_InterfaceObj";

// Stand in for null tables, so that no look-up meets one.
constexpr omu_InterfaceObj::methodTable emptyMethods[] = {{}};
constexpr omu_InterfaceObj::memberTable emptyMembers[] = {{}};
constexpr omu_InterfaceObj::deprecatedMethodTable emptyDMethods[] = {{}};
constexpr omu_InterfaceObj::deprecatedMemberTable emptyDMembers[] = {{}};

bool PermitsDeprecated()
{
    return omi_Singleton<omu_BackwardCompat>::Instance().IsOn();
}

/// The row of a deprecated name while these are permitted, which sets the flag; else null.
template <class Entry>
[[gnu::noinline]] const Entry* FindDeprecated(const omu_NameIndex<Entry>& names, const char* name, bool& deprecated)
{
    const Entry* const row = PermitsDeprecated() ? names.Find(name) : nullptr;
    deprecated = deprecated || row != nullptr;
    return row;
}

/// The method of that name, or null.
inline const omu_Method* FindMethod(const omu_TypeLevels& levels, const char* name, bool& deprecated)
{
    if (const omu_MethodEntry* const row = levels.Methods().Find(name)) {
        return &row->method;
    }
    const omu_DeprecatedMethodEntry* const row = FindDeprecated(levels.DeprecatedMethods(), name, deprecated);
    return row != nullptr ? &row->method : nullptr;
}

struct Accessors
{
    omu_Getter getter = nullptr;
    omu_Setter setter = nullptr;
};

Accessors FindMember(const omu_TypeLevels& levels, const char* name, bool& deprecated)
{
    if (const omu_MemberEntry* row = levels.Members().Find(name)) {
        return {row->getter, row->setter};
    }
    const omu_DeprecatedMemberEntry* const row = FindDeprecated(levels.DeprecatedMembers(), name, deprecated);
    return row != nullptr ? Accessors{row->getter, row->setter} : Accessors{};
}

template <class Entry> cow_List<cow_String> NamesOf(const omu_NameIndex<Entry>& index)
{
    cow_List<cow_String> names;
    for (const Entry* row : index.Rows()) {
        names.Append(cow_String(row->name));
    }
    return names;
}

/// Part(name='wing', section='Section object')
void AppendMembers(std::string& text, const omu_InterfaceObj& object, int depth)
{
    if (omu_IsCutOff(depth)) {
        text += omi_Singleton<omu_TextRepr>::Instance().GetMaxRecursionString(&object);
        return;
    }
    const cow_List<cow_String> names = object.MemberList();
    text += object.ExposedTypeName();
    text += '(';
    omu_AppendElements(text, names.Length(), [&](int i) {
        text += names[i];
        text += '=';
        bool deprecated = false;
        // Getters may work on their object: this is what a script's reading of the member does.
        const std::unique_ptr<omu_Primitive> value(
            const_cast<omu_InterfaceObj&>(object).GetMember(names[i].AsCharPtr(), deprecated));
        if (value != nullptr && value->IsType('<')) {
            AppendMembers(text, static_cast<const omu_InterfaceObj&>(*value), depth + 1);
        } else {
            omu_AppendElement(text, value.get(), depth + 1);
        }
    });
    text += ')';
}

[[noreturn]] void ThrowText(const char* text, int line)
{
    nex_TextException(text).Throw(SOURCE, line);
}

} // namespace

// Defined for users of the DLL who bind references to it.
constexpr int omu_InterfaceObj::MAX_DEPTH;

omu_InterfaceObj::omu_InterfaceObj(omu_OperationRules rules, omu_PythonType pythonType) noexcept
    : omu_Primitive('<'), m_levels(omu_TypeLevels::None()), m_operationRules(rules), m_pythonType(pythonType)
{}

omu_InterfaceObj::omu_InterfaceObj(const omu_InterfaceObj& other) noexcept
    : omu_Primitive(other), m_levels(other.m_levels), m_operationRules(other.m_operationRules),
      m_pythonType(other.m_pythonType), m_notJournaled(other.m_notJournaled)
{}

omu_InterfaceObj& omu_InterfaceObj::operator=(const omu_InterfaceObj& other) noexcept
{
    // References keep referring to this object; only what it is described as changes.
    m_levels = other.m_levels;
    m_operationRules = other.m_operationRules;
    m_pythonType = other.m_pythonType;
    m_notJournaled = other.m_notJournaled;
    return *this;
}

omu_InterfaceObj::~omu_InterfaceObj()
{
    if (m_life != nullptr) {
        m_life->target = nullptr;
        omu_ReleaseLife(m_life);
    }
}

cow_String omu_InterfaceObj::TypeString() const
{
    return ExposedTypeName();
}

cow_String omu_InterfaceObj::AsString(int depth) const
{
    // On its own an object is never cut off: nothing of it is expanded, and texts that name it hold whatever the settings.
    return depth > 0 && omu_IsCutOff(depth) ? omi_Singleton<omu_TextRepr>::Instance().GetMaxRecursionString(this)
                                            : "<" + ExposedTypeName() + " object>";
}

bool omu_InterfaceObj::operator==(const omu_Primitive&) const
{
    return true;
}

void omu_InterfaceObj::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitInterfaceObj(*this);
}

std::uint32_t omu_InterfaceObj::DynTypeId() const
{
    return TypeId();
}

std::uint32_t omu_InterfaceObj::TypeId()
{
    // Kernel objects have no row of their own: to the type tables they are values and nothing more.
    return omu_Primitive::TypeId();
}

bool omu_InterfaceObj::IsDescribed() const
{
    if (m_levels->IsNone()) {
        VEXCRT::_assert("Must call DescribeType before using", SOURCE, __LINE__);
        return false;
    }
    return true;
}

bool omu_InterfaceObj::IsMethod(const char* name, bool& deprecated)
{
    return IsDescribed() && name != nullptr && FindMethod(*m_levels, name, deprecated) != nullptr;
}

omu_Primitive* omu_InterfaceObj::CallMethod(const char*, const char* methodName, omu_Arguments& arguments,
                                            bool& deprecated)
{
    if (const omu_Method* const method = FindMethod(*m_levels, methodName, deprecated)) {
        return (this->**method)(arguments);
    }
    static_cast<void>(IsDescribed()); // reports an object that is not
    return nullptr;
}

omu_Primitive* omu_InterfaceObj::GetMember(const char* name, bool& deprecated)
{
    if (!IsDescribed()) {
        return nullptr;
    }
    const Accessors member = FindMember(*m_levels, name, deprecated);
    return member.getter != nullptr ? (this->*member.getter)() : nullptr;
}

omu_Primitive* omu_InterfaceObj::SetMember(const char* name, omu_Arguments& arguments, bool& deprecated)
{
    if (!IsDescribed()) {
        return nullptr;
    }
    const Accessors member = FindMember(*m_levels, name, deprecated);
    return member.setter != nullptr ? (this->*member.setter)(arguments) : nullptr;
}

bool omu_InterfaceObj::DeleteMember(const cow_String&)
{
    return false;
}

cow_List<cow_String> omu_InterfaceObj::MemberList() const
{
    return NamesOf(m_levels->Members());
}

cow_List<cow_String> omu_InterfaceObj::MethodList() const
{
    return NamesOf(m_levels->Methods());
}

cow_String omu_InterfaceObj::Repr() const
{
    return AsString(0);
}

cow_String omu_InterfaceObj::FullRepr() const
{
    std::string text;
    AppendMembers(text, *this, 0);
    return std::string_view(text);
}

cow_String omu_InterfaceObj::JournalVariable() const
{
    return cow_String();
}

cow_String omu_InterfaceObj::CommandPath(const cow_String& objectPath, const cow_String& methodName,
                                         omu_Arguments& arguments) const
{
    return omu_MethodCall(objectPath, methodName, arguments).CommandText();
}

omu_Primitive* omu_InterfaceObj::Coerce(omu_Arguments&)
{
    ThrowText("Error: Cannot coerce.", __LINE__);
}

omu_Primitive* omu_InterfaceObj::Cast(omu_Arguments&)
{
    return nullptr;
}

// The unary operations end their text with a full stop, the binary ones do not; both texts are promised.
omu_Primitive* omu_InterfaceObj::Absolute()
{
    ThrowText("Error: Illegal operation for type.", __LINE__);
}

omu_Primitive* omu_InterfaceObj::AddOperation(omu_InterfaceObj*)
{
    ThrowText("Error: Illegal operation for type", __LINE__);
}

omu_Primitive* omu_InterfaceObj::SubOperation(omu_InterfaceObj*)
{
    ThrowText("Error: Illegal operation for type", __LINE__);
}

omu_Primitive* omu_InterfaceObj::MulOperation(omu_InterfaceObj*)
{
    ThrowText("Error: Illegal operation for type", __LINE__);
}

omu_Primitive* omu_InterfaceObj::DivOperation(omu_InterfaceObj*)
{
    ThrowText("Error: Illegal operation for type", __LINE__);
}

omu_Primitive* omu_InterfaceObj::UnaryNegative()
{
    ThrowText("Error: Illegal operation for type.", __LINE__);
}

int omu_InterfaceObj::NonZero() const
{
    return 1;
}

const omu_PrimWrapper* omu_InterfaceObj::ConstGetWrapper() const
{
    return nullptr;
}

bool omu_InterfaceObj::IsA(const char* typeName) const
{
    return typeName != nullptr && (std::string_view(typeName) == "BrenowObject" || m_levels->HasLevel(typeName));
}

cow_String omu_InterfaceObj::ExposedTypeName() const
{
    const int depth = m_levels->Depth();
    if (depth == 0) {
        return cow_String();
    }
    const omu_TypeRegistryCache& exposed = omi_Singleton<omu_TypeRegistryCache>::Instance();
    for (int level = depth - 1; level >= 0; --level) {
        if (exposed.IsRegistered(m_levels->Level(level).typeName)) {
            return m_levels->Level(level).typeName;
        }
    }
    return m_levels->Level(depth - 1).typeName;
}

cow_String omu_InterfaceObj::BaseType() const
{
    return m_levels->Depth() > 0 ? m_levels->Level(0).typeName : cow_String();
}

int omu_InterfaceObj::HierarchyDepth() const noexcept
{
    return m_levels->Depth();
}

const omu_InterfaceObj::TypeDesc& omu_InterfaceObj::Level(int index) const noexcept
{
    return m_levels->Level(index);
}

void omu_InterfaceObj::DoNotJournal(const cow_String& name)
{
    m_notJournaled.Prepend(name);
}

bool omu_InterfaceObj::ShouldJournal(const cow_String& name) const
{
    return !m_notJournaled.IsMember(name);
}

const omu_InterfaceObj& omu_InterfaceObj::Resolve() const
{
    return m_isReference ? static_cast<const omu_ObjectRef*>(this)->Target() : *this;
}

omu_InterfaceObj& omu_InterfaceObj::Resolve()
{
    return m_isReference ? static_cast<omu_ObjectRef*>(this)->Target() : *this;
}

void omu_InterfaceObj::DescribeType(const char* typeName, const methodTable* methods, const memberTable* members,
                                    const deprecatedMethodTable* deprecatedMethods,
                                    const deprecatedMemberTable* deprecatedMembers)
{
    if (m_levels->HasLevel(typeName)) {
        return;
    }
    if (m_levels->Depth() >= MAX_DEPTH) {
        VEXCRT::_assert("Max inheritance hierarchy depth exceeded", SOURCE, __LINE__);
        return;
    }
    m_levels = m_levels->With({.typeName = typeName,
                               .methods = methods != nullptr ? methods : emptyMethods,
                               .members = members != nullptr ? members : emptyMembers,
                               .deprecatedMethods = deprecatedMethods != nullptr ? deprecatedMethods : emptyDMethods,
                               .deprecatedMembers = deprecatedMembers != nullptr ? deprecatedMembers : emptyDMembers});
}
