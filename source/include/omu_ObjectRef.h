#pragma once

#include "omu_InterfaceObj.h"

/// A script's hold on a kernel object that the kernel owns: it travels as a value, answers for the object it refers to,
/// and notices when that object is gone.
///
/// Ownership:  refers to the object, never keeps it alive; any number of references share one small token.
/// Threads:    the thread of the kernel object.
/// Errors:     every use after the object is gone throws omu_AccessErrorException, "<object> no longer exists"; copying
///             and deleting a dead reference stay allowed.
/// Example:    return new omu_ObjectRef(*part);   // from a method
class VEXOMU_API omu_ObjectRef final : public omu_InterfaceObj
{
public:
    /// A reference to `object`, or to what it refers to when it is a reference itself.
    explicit omu_ObjectRef(omu_InterfaceObj& object);
    omu_ObjectRef(const omu_ObjectRef& other) noexcept;
    omu_ObjectRef& operator=(const omu_ObjectRef& other) noexcept;
    ~omu_ObjectRef() override;

    bool IsAlive() const noexcept;
    /// The object; throws omu_AccessErrorException when it is gone.
    omu_InterfaceObj& Target() const;
    /// Equal for references to the same object, and for no others, also after the object is gone.
    const void* Identity() const noexcept { return m_token; }

    cow_String TypeString() const override;
    cow_String AsString(int depth) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;
    bool IsMethod(const char* name, bool& deprecated) override;
    omu_Primitive* CallMethod(const char* objectName, const char* methodName, omu_Arguments& arguments,
                              bool& deprecated) override;
    omu_Primitive* GetMember(const char* name, bool& deprecated) override;
    omu_Primitive* SetMember(const char* name, omu_Arguments& arguments, bool& deprecated) override;
    bool DeleteMember(const cow_String& name) override;
    cow_List<cow_String> MemberList() const override;
    cow_List<cow_String> MethodList() const override;
    cow_String Repr() const override;
    cow_String FullRepr() const override;
    cow_String JournalVariable() const override;
    cow_String CommandPath(const cow_String& objectPath, const cow_String& methodName,
                           omu_Arguments& arguments) const override;
    omu_Primitive* Coerce(omu_Arguments& arguments) override;
    omu_Primitive* Cast(omu_Arguments& arguments) override;
    omu_Primitive* Absolute() override;
    omu_Primitive* AddOperation(omu_InterfaceObj* other) override;
    omu_Primitive* SubOperation(omu_InterfaceObj* other) override;
    omu_Primitive* MulOperation(omu_InterfaceObj* other) override;
    omu_Primitive* DivOperation(omu_InterfaceObj* other) override;
    omu_Primitive* UnaryNegative() override;
    int NonZero() const override;
    const omu_PrimWrapper* ConstGetWrapper() const override;

private:
    omu_LifeToken* m_token; // a share; never null
};
