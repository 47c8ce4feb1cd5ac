#pragma once

#include "omu_Primitive.h"

class omu_PrimEnumBase;

/// A script's string.
///
/// Ownership:  shares its text with copies.
/// References: AsCharPtr() dies with the next Concat or the string.
class VEXOMU_API omu_PrimString : public omu_Primitive
{
public:
    explicit omu_PrimString(const cow_String& text) noexcept : omu_Primitive('s'), m_text(text) {}
    /// The constant's name.
    explicit omu_PrimString(const omu_PrimEnumBase& constant);
    // The text of the number, as a script shows it.
    explicit omu_PrimString(int value);
    explicit omu_PrimString(unsigned int value);
    explicit omu_PrimString(double value);
    explicit omu_PrimString(bio_Ifilter& in);

    const cow_String& GetString() const noexcept { return m_text; }
    const char* AsCharPtr() const noexcept { return m_text.AsCharPtr(); }
    int Length() const noexcept { return m_text.Length(); }
    /// The character at `index`; outside the text an assertion is reported and the result is a zero byte.
    char operator[](int index) const { return m_text[index]; }
    /// The characters from `from` up to but not including `to`, both clamped to the text; the caller owns the result.
    omu_PrimString* Slice(int from, int to) const;
    /// Appends `other`'s text.
    void Concat(const omu_PrimString& other);

    /// "string".
    cow_String TypeString() const override;
    /// As a script writes it: 'it\'s'. Only backslash, single quote and line feed are escaped.
    cow_String AsString(int depth) const override;
    /// Equal texts; only a string equals a string.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, text.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    cow_String m_text;
};
