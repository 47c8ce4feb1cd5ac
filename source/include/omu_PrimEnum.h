#pragma once

#include "VEXCRT.h"
#include "cls_ReadVisitor.h"
#include "cls_Uid.h"
#include "omu_PrimEnumBase.h"

#include <string_view>

/// One name of an enumeration and what it stands for. The first row with a value is the one that is shown for it.
template <class T> struct omu_EnumRow
{
    const char* name;
    T value;
};

/// The table of an enumeration's names, closed by a row whose name is null; several tables for one T differ by Inst. Each
/// is a specialisation:
///
///     template <> inline const omu_EnumRow<Shape>* omu_EnumTable<Shape, 1>()
///     {
///         static constexpr omu_EnumRow<Shape> rows[] = {{"QUAD", Shape::QUAD}, {"TRI", Shape::TRI}, {nullptr, {}}};
///         return rows;
///     }
template <class T, int Inst> const omu_EnumRow<T>* omu_EnumTable();

/// A symbolic constant bound to an enumeration through the table omu_EnumTable<T, Inst>().
///
/// Ownership:  has an identity in the store, which copies share.
/// Threads:    the thread that made it: its identity is given back there.
/// Complexity: O(names).
/// Errors:     names are matched exactly; SetValue answers with false, the constructor from a text throws
///             omu_ValueErrorException, reading a name that is not in the table throws nex_TextException.
template <class T, int Inst> class omu_PrimEnum : public omu_PrimEnumBase
{
public:
    /// A value that is not in the table is reported as an assertion, and leaves the constant without a name.
    explicit omu_PrimEnum(T value);
    explicit omu_PrimEnum(const cow_String& text);
    /// A literal is a name, also where T is bool.
    explicit omu_PrimEnum(const char* text) : omu_PrimEnum(cow_String(text)) {}
    explicit omu_PrimEnum(bio_Ifilter& in);
    /// From a stored record; without a stored name the constant has none, and a value-initialised value.
    explicit omu_PrimEnum(const cls_ReadVisitor& visitor);

    T GetValue() const noexcept { return m_value; }
    const cls_Uid& GetUid() const noexcept { return m_uid; }

    cow_String TypeString() const override;
    omu_Primitive* Copy() const override;
    bool SetValue(const char* text) override;
    cow_Map<cow_String, unsigned int> PermissibleValues() const override;
    /// Writes the constant as the record, field or element that `visitor` stands for.
    virtual void DBWrite(const cls_WriteVisitor& visitor) const;

    /// Takes the first row with `value`; false, and nothing changes, when there is none.
    bool SetValue(T value);

    // One row of the table; `row` is not checked.
    static const char* Name(int row) { return omu_EnumTable<T, Inst>()[row].name; }
    static T Value(int row) { return omu_EnumTable<T, Inst>()[row].value; }

    /// Builds a constant from a stored record; the caller owns it.
    static void* Ctor(cls_ReadVisitor& visitor);
    /// Declares the class to the store.
    static void InitializeMetadata(cls_ClassRegistrar& registrar);

private:
    /// Takes the row of exactly this name.
    bool SetName(std::string_view name);

    T m_value{};
    cls_Uid m_uid = cls_Uid::AllocateUid();
};

template <class T, int Inst> omu_PrimEnum<T, Inst>::omu_PrimEnum(T value) : m_value(value)
{
    if (!SetValue(value)) {
        VEXCRT::_assert("value has a name", "source/include/omu_PrimEnum", __LINE__);
    }
}

template <class T, int Inst> omu_PrimEnum<T, Inst>::omu_PrimEnum(const cow_String& text)
{
    if (!SetName(text)) {
        ThrowNotAllowed(text, __LINE__);
    }
}

template <class T, int Inst> omu_PrimEnum<T, Inst>::omu_PrimEnum(bio_Ifilter& in) : omu_PrimEnumBase(in) {}

template <class T, int Inst>
omu_PrimEnum<T, Inst>::omu_PrimEnum(const cls_ReadVisitor& visitor) : m_uid(visitor.GetUid())
{
    const cow_String text = ReadStoredText(visitor);
    if (!text.IsEmpty() && !SetName(text)) {
        ThrowNotStored(text, __LINE__);
    }
}

template <class T, int Inst> cow_String omu_PrimEnum<T, Inst>::TypeString() const
{
    return JoinNames(PermissibleValues());
}

template <class T, int Inst> omu_Primitive* omu_PrimEnum<T, Inst>::Copy() const
{
    return new omu_PrimEnum(*this);
}

template <class T, int Inst> bool omu_PrimEnum<T, Inst>::SetValue(const char* text)
{
    return text != nullptr && SetName(text);
}

template <class T, int Inst> bool omu_PrimEnum<T, Inst>::SetName(std::string_view name)
{
    for (const omu_EnumRow<T>* row = omu_EnumTable<T, Inst>(); row->name != nullptr; ++row) {
        if (row->name == name) {
            m_value = row->value;
            SetText(row->name);
            return true;
        }
    }
    return false;
}

template <class T, int Inst> bool omu_PrimEnum<T, Inst>::SetValue(T value)
{
    for (const omu_EnumRow<T>* row = omu_EnumTable<T, Inst>(); row->name != nullptr; ++row) {
        if (row->value == value) {
            m_value = value;
            SetText(row->name);
            return true;
        }
    }
    return false;
}

template <class T, int Inst> cow_Map<cow_String, unsigned int> omu_PrimEnum<T, Inst>::PermissibleValues() const
{
    cow_Map<cow_String, unsigned int> names;
    for (int row = 0; Name(row) != nullptr; ++row) {
        names.Insert(cow_String(Name(row)), static_cast<unsigned int>(row));
    }
    return names;
}

template <class T, int Inst> void omu_PrimEnum<T, Inst>::DBWrite(const cls_WriteVisitor& visitor) const
{
    WriteStored(visitor, m_uid);
}

template <class T, int Inst> void* omu_PrimEnum<T, Inst>::Ctor(cls_ReadVisitor& visitor)
{
    return new omu_PrimEnum(visitor);
}

template <class T, int Inst> void omu_PrimEnum<T, Inst>::InitializeMetadata(cls_ClassRegistrar& registrar)
{
    RegisterMetadata(registrar, &Ctor);
}
