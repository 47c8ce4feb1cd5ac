#pragma once

#include "VEXomu_export.h"
#include "cow_String.h"

/// A text as a small number: atoms of one text are equal, and comparing them costs nothing.
///
/// Threads:    any; the texts are those of the process and stay until it ends.
/// Complexity: from a text O(length); from a number and back O(1).
/// Errors:     an assertion for a null text and for a number that stands for none; the atom is then 0.
/// Example:    omu_Atom::CreateAtom("S11"); omu_Atom stress("S11");
class VEXOMU_API omu_Atom
{
public:
    /// Gives `text` a number; false when it has one. A null text has none and gets none.
    static bool CreateAtom(const char* text);

    /// The number of `text`; 0 when it was never given one.
    explicit omu_Atom(const char* text);
    explicit omu_Atom(unsigned int index);

    unsigned int Index() const noexcept { return m_index; }
    /// The text; empty for 0.
    cow_String String() const;

    friend bool operator==(const omu_Atom&, const omu_Atom&) noexcept = default;

private:
    unsigned int m_index = 0;
};
