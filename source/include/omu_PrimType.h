#pragma once

#include "omu_Primitive.h"

class omu_InterfaceObj;

/// The objects that a viewport can show, as script types name them.
enum omu_ObjectToDisplayTypeEnm : int
{
    omu_DISPLAY_NONE = 0,
    omu_DISPLAY_PART = 1,
    omu_DISPLAY_ASSEMBLY = 2,
    omu_DISPLAY_SKETCH = 3,
    omu_DISPLAY_ODB = 4,
    omu_DISPLAY_XY_PLOT = 5,
    omu_DISPLAY_STUB = 6,
    omu_DISPLAY_UNKNOWN = 7
};

/// The type of a kernel object as a value; without a name it stands for any type.
class VEXOMU_API omu_PrimType : public omu_Primitive
{
public:
    /// Any type.
    omu_PrimType() noexcept : omu_Primitive('t') {}
    explicit omu_PrimType(const omu_InterfaceObj& object);
    /// The type of this name; empty: any type.
    explicit omu_PrimType(const cow_String& name) noexcept : omu_Primitive('t'), m_name(name) {}
    explicit omu_PrimType(bio_Ifilter& in);

    /// Empty: any type.
    const cow_String& GetName() const noexcept { return m_name; }

    /// True when both are the same type or either is any type.
    bool SameType(const omu_PrimType& other) const noexcept;
    bool SameType(const omu_InterfaceObj& object) const;

    /// The name followed by "Type"; for any type "type".
    cow_String TypeString() const override;
    /// The name followed by "Type"; for any type "Type".
    cow_String AsString(int depth) const override;
    /// Equal names: unlike in SameType, any type equals only itself. Only a type equals a type.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    // These two are promised under names that lack a letter.
    /// The word for `type`; empty for omu_DISPLAY_UNKNOWN and numbers outside the enumeration.
    static cow_String ConverTypeToString(const omu_ObjectToDisplayTypeEnm& type);
    /// What the word stands for, in exactly this spelling, else omu_DISPLAY_UNKNOWN.
    static omu_ObjectToDisplayTypeEnm ConverStringToType(const cow_String& word);

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, name.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    cow_String m_name;
};
