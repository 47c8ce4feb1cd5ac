#pragma once

#include "cls_PayloadHolder.h"
#include "cow_Map.h"
#include "omu_Primitive.h"

class cls_ClassRegistrar;
class cls_ReadVisitor;
class cls_Uid;
class cls_WriteVisitor;

/// A symbolic constant as scripts know it: by its name. On its own it takes any name; omu_PrimEnum binds one to an
/// enumeration and its names.
///
/// Ownership:  shares its text with copies.
/// Threads:    one thread at a time.
class VEXOMU_API omu_PrimEnumBase : public omu_Primitive
{
public:
    /// Without a name.
    omu_PrimEnumBase() noexcept : omu_Primitive('c') {}
    explicit omu_PrimEnumBase(const cow_String& text) noexcept : omu_Primitive('c'), m_text(text) {}
    explicit omu_PrimEnumBase(bio_Ifilter& in);

    /// The name; empty when none is set.
    const cow_String& GetString() const noexcept { return m_text; }

    /// The names it can have: "A", "A or B", "A, B or C"; on its own its name, or "symbolic constant" without one.
    cow_String TypeString() const override;
    /// The name.
    cow_String AsString(int depth) const override;
    /// Equal names, whatever the enumerations. Only a constant equals a constant.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    /// Takes `text` as the name; false, and nothing changes, when the class has no such name.
    virtual bool SetValue(const char* text);
    /// The names the class has, each with its position; on its own it knows none and reports an assertion.
    virtual cow_Map<cow_String, unsigned int> PermissibleValues() const;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, text; a text that the object's class does not know is refused.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

    /// Empties the payload holder of a stored constant: it is an omu_PrimHolder, whatever the enumeration.
    static void CowDtor(cls_PayloadHolder* payload);

protected:
    // What the enumerations share, free of their types.
    /// Makes `name` the text without a look at the permissible ones.
    void SetText(const char* name) { m_text = cow_String(name); }
    /// The names in the order of their positions, as TypeString() shows them.
    static cow_String JoinNames(const cow_Map<cow_String, unsigned int>& names);
    /// Throws the error of the constructor from a text.
    [[noreturn]] static void ThrowNotAllowed(const cow_String& text, int line);
    /// Throws the error of the constructor from a stored record.
    [[noreturn]] static void ThrowNotStored(const cow_String& text, int line);
    /// Declares a constant's class to the store; `ctor` builds one from a stored record.
    static void RegisterMetadata(cls_ClassRegistrar& registrar, void* (*ctor)(cls_ReadVisitor&));
    /// The stored name; empty when the record has none.
    static cow_String ReadStoredText(const cls_ReadVisitor& visitor);
    /// Writes the name under the identity `uid`.
    void WriteStored(const cls_WriteVisitor& visitor, const cls_Uid& uid) const;

private:
    cow_String m_text;
};
