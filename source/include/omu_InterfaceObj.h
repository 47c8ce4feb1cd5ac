#pragma once

#include "cow_List.h"
#include "omu_Primitive.h"

#include <concepts>

class omu_Arguments;
class omu_InterfaceObj;
class omu_PrimWrapper;
class omu_TypeLevels;
struct omu_LifeToken;

/// Which operators a class offers to scripts.
enum omu_OperationRules : int
{
    omu_NO_OPERATION_RULES = 0
};

/// As which of the script language's own kinds an object presents itself.
enum omu_PythonType : int
{
    omu_NO_PYTHON_TYPE = 0
};

/// A method takes the call's arguments and returns a new value, or null for none; the caller owns it.
using omu_Method = omu_Primitive* (omu_InterfaceObj::*)(omu_Arguments& arguments);
/// A getter returns a new value that the caller owns.
using omu_Getter = omu_Primitive* (omu_InterfaceObj::*)();
/// A setter takes the new value as its one argument; it returns none when it was set, and throws when it cannot be.
using omu_Setter = omu_Primitive* (omu_InterfaceObj::*)(omu_Arguments& arguments);

// Rows of the static tables that describe a class to scripts, each table closed by a row whose name is null. The
// description is what the script user reads in help; a deprecated row also names its replacement and the version that
// deprecated it.
struct omu_MethodEntry
{
    const char* name = nullptr;
    const char* description = nullptr;
    omu_Method method = nullptr;
};

struct omu_MemberEntry
{
    const char* name = nullptr;
    const char* description = nullptr;
    omu_Getter getter = nullptr;
    omu_Setter setter = nullptr; // null: read-only
};

struct omu_DeprecatedMethodEntry
{
    const char* name = nullptr;
    const char* description = nullptr;
    omu_Method method = nullptr;
    const char* replacement = nullptr;
    const char* sinceVersion = nullptr;
};

struct omu_DeprecatedMemberEntry
{
    const char* name = nullptr;
    const char* description = nullptr;
    omu_Getter getter = nullptr;
    omu_Setter setter = nullptr;
    const char* replacement = nullptr;
    const char* sinceVersion = nullptr;
};

// A method or setter, and a getter, of a derived class as the tables hold them: omu_AsMethod<&Part::Translate>.
template <auto METHOD> inline constexpr omu_Method omu_AsMethod = static_cast<omu_Method>(METHOD);
template <auto GETTER> inline constexpr omu_Getter omu_AsGetter = static_cast<omu_Getter>(GETTER);

/// Base of every script-visible object that is not a plain value: a kernel object with methods and members found by
/// name. Each level of a class hierarchy describes itself once, in its constructor, base first; the most derived level
/// that has a name wins. A second set of tables holds deprecated names, which count only while backward-compatible
/// behaviour is on.
///
/// Ownership:  a value like any other: deleted by its owner. Kernel objects that outlive a call are handed to scripts as
///             omu_ObjectRef, which notices when they are gone.
/// Threads:    one thread at a time; descriptions are shared by all threads.
/// Complexity: DescribeType, and every look-up by name, O(1) in the number of levels and names.
/// Errors:     unknown names give false or null; the operations that a class does not offer throw nex_TextException.
/// Example:    see examples/fem.
class VEXOMU_API omu_InterfaceObj : public omu_Primitive
{
public:
    using methodTable = omu_MethodEntry;
    using memberTable = omu_MemberEntry;
    using deprecatedMethodTable = omu_DeprecatedMethodEntry;
    using deprecatedMemberTable = omu_DeprecatedMemberEntry;

    /// One level of the hierarchy; null tables are replaced by the shared empty ones.
    struct TypeDesc
    {
        cow_String typeName;
        const methodTable* methods = nullptr;
        const memberTable* members = nullptr;
        const deprecatedMethodTable* deprecatedMethods = nullptr;
        const deprecatedMemberTable* deprecatedMembers = nullptr;
    };

    /// At most this many levels can be described.
    static constexpr int MAX_DEPTH = 9;

    ~omu_InterfaceObj() override;

    /// The exposed type name.
    cow_String TypeString() const override;
    /// "<Part object>"; within another object, from the maximum recursion of the text settings on, what these let stand
    /// for it.
    cow_String AsString(int depth) const override;
    /// Always true, whatever the other value: promised, and it must stay.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override = 0;
    std::uint32_t DynTypeId() const override;

    // Dispatch by name. `deprecated` is set to true when the name was found among the deprecated ones.
    /// False for null.
    virtual bool IsMethod(const char* name, bool& deprecated);
    /// Calls the method; null when there is none. `objectName` is what the script calls the object; it is not looked at.
    virtual omu_Primitive* CallMethod(const char* objectName, const char* methodName, omu_Arguments& arguments,
                                      bool& deprecated);
    virtual omu_Primitive* GetMember(const char* name, bool& deprecated);
    /// Calls the setter; null when the member is unknown or read-only.
    virtual omu_Primitive* SetMember(const char* name, omu_Arguments& arguments, bool& deprecated);
    /// Deletes a member that a class lets scripts delete; false here.
    virtual bool DeleteMember(const cow_String& name);
    /// The names that scripts may use, without the deprecated ones: most derived level first, each name once.
    virtual cow_List<cow_String> MemberList() const;
    virtual cow_List<cow_String> MethodList() const;
    /// The text that the script shell shows.
    virtual cow_String Repr() const;
    /// The members and their values, Part(name='wing', size=30), within the limits of the text settings. Calls the
    /// getters, and throws what they throw.
    virtual cow_String FullRepr() const;
    /// The name under which a journal holds the object in a variable; empty: by its path.
    virtual cow_String JournalVariable() const;
    /// The command text of a call: object path, method, arguments.
    virtual cow_String CommandPath(const cow_String& objectPath, const cow_String& methodName,
                                   omu_Arguments& arguments) const;
    virtual omu_Primitive* Coerce(omu_Arguments& arguments);
    virtual omu_Primitive* Cast(omu_Arguments& arguments);
    virtual omu_Primitive* Absolute();
    virtual omu_Primitive* AddOperation(omu_InterfaceObj* other);
    virtual omu_Primitive* SubOperation(omu_InterfaceObj* other);
    virtual omu_Primitive* MulOperation(omu_InterfaceObj* other);
    virtual omu_Primitive* DivOperation(omu_InterfaceObj* other);
    virtual omu_Primitive* UnaryNegative();
    virtual int NonZero() const;
    virtual const omu_PrimWrapper* ConstGetWrapper() const;

    using omu_Primitive::IsA;
    /// True for "BrenowObject" and for the type name of any described level; false for null.
    bool IsA(const char* typeName) const;
    /// The most derived level's name that is registered as exposed to scripts; with none registered, the most derived.
    cow_String ExposedTypeName() const;
    /// The first level's name; empty before any is described.
    cow_String BaseType() const;

    int HierarchyDepth() const noexcept;
    /// What this object is described as: equal for two objects exactly when they have the same levels.
    const omu_TypeLevels* Levels() const noexcept { return m_levels; }
    /// Level `index`, 0 the base; valid for 0 <= index < HierarchyDepth().
    const TypeDesc& Level(int index) const noexcept;
    omu_OperationRules OperationRules() const noexcept { return m_operationRules; }
    omu_PythonType PythonType() const noexcept { return m_pythonType; }

    /// Keeps calls of the method, or assignments to the member, out of the journal.
    void DoNotJournal(const cow_String& name);
    bool ShouldJournal(const cow_String& name) const;

    /// The kernel object itself: what a reference refers to, this object otherwise. Throws omu_AccessErrorException when
    /// the object referred to no longer exists.
    const omu_InterfaceObj& Resolve() const;
    omu_InterfaceObj& Resolve();

    static std::uint32_t TypeId();

protected:
    omu_InterfaceObj() noexcept : omu_InterfaceObj(omu_NO_OPERATION_RULES, omu_NO_PYTHON_TYPE) {}
    omu_InterfaceObj(omu_OperationRules rules, omu_PythonType pythonType) noexcept;
    omu_InterfaceObj(const omu_InterfaceObj& other) noexcept;
    omu_InterfaceObj& operator=(const omu_InterfaceObj& other) noexcept;

    /// Appends a level, base first; a level whose name is already described is ignored. The tables are static and
    /// outlive every object; null stands for an empty one.
    void DescribeType(const char* typeName, const methodTable* methods, const memberTable* members,
                      const deprecatedMethodTable* deprecatedMethods = nullptr,
                      const deprecatedMemberTable* deprecatedMembers = nullptr);

private:
    friend class omu_ObjectRef;

    bool IsDescribed() const;

    // Described levels, shared by all objects of a class; never owned, never null.
    const omu_TypeLevels* m_levels;
    omu_OperationRules m_operationRules;
    omu_PythonType m_pythonType;
    bool m_isReference = false; // an omu_ObjectRef
    // How references notice the end of this object; made with the first one.
    mutable omu_LifeToken* m_life = nullptr;
    cow_List<cow_String> m_notJournaled;
};
