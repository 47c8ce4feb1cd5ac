#pragma once

#include "VEXomu_export.h"
#include "nex_CommandException.h"

#include <tuple>

/// What the error classes with one text have in common. It has no row in the run-time type tables, where they
/// derive from nex_CommandException directly.
///
/// Avoid for:  catch clauses; the classes' kinship is an accident of their fields.
class VEXOMU_API omu_MessageException : public nex_CommandException
{
public:
    using nex_CommandException::nex_CommandException;
    omu_MessageException() = default;
    /// `subject` is the name or key that the error is about, for programs that look at the error; no stream has it.
    explicit omu_MessageException(cow_String text, cow_String subject = {});

    /// The text as it stands.
    cow_String JournalMessage() const override;

    const cow_String& Text() const noexcept { return m_text; }
    /// Empty when it was not said.
    const cow_String& Subject() const noexcept { return m_subject; }

protected:
    // All of these classes dump under this one word: promised, and it must stay.
    static constexpr const char* DUMP_NAME = "NAME";
    static constexpr auto Fields() { return std::tuple(&omu_MessageException::m_text); }

private:
    cow_String m_text;
    cow_String m_subject;
};
