#pragma once

#include "VEXomu_export.h"
#include "cow_String.h"

/// A name that was checked, when it was made, against the rules for what it is to name.
///
/// Ownership:  an ordinary value; copies share the text.
/// Threads:    names are made by one thread at a time, as regular expressions are matched; distinct copies may live on
///             distinct threads.
/// Complexity: O(length).
/// Errors:     omu_BreNameErrorException for the first rule that is broken; no object is left behind.
/// Example:    const omu_BrenowName name("Part-1", omu_BrenowName::GUI_NAME);
class VEXOMU_API omu_BrenowName
{
public:
    /// What is named, and by which side: names of the analysis have up to 80 characters, those of the interactive side
    /// up to 38 and no underscore or blank at either end.
    enum omu_BrenowNameEnum : int
    {
        KER_NAME = 0,
        KER_JOB_NAME = 1,
        KER_MODEL_NAME = 2,
        GUI_NAME = 3,
        GUI_JOB_NAME = 4,
        GUI_MODEL_NAME = 5,
        STEP_NAME = 6 // anything
    };

    /// Empty and not checked; as the target of a call's parameter it asks for a KER_NAME.
    omu_BrenowName() = default;
    /// A kind that is not one of the enumerators is not checked.
    omu_BrenowName(const cow_String& name, omu_BrenowNameEnum kind);
    omu_BrenowName(const char* name, omu_BrenowNameEnum kind);

    cow_String AsString() const { return m_name; }
    /// Whose rules it was checked against, and will be when a call's parameter is fetched into it.
    omu_BrenowNameEnum Kind() const noexcept { return m_kind; }

    friend bool operator==(const omu_BrenowName& left, const omu_BrenowName& right) noexcept
    {
        return left.m_name == right.m_name;
    }

    /// Repairs `name` until it obeys the rules of GUI_NAME, at most 38 characters long; true when that changed it. It may
    /// come out empty. The six replacements are, in order, what is put before a leading digit, and what takes the place of
    /// a double quote, a dot, a backslash, a leading and a trailing underscore or blank; a dot removes the character (or
    /// leading digits) instead. With replacements that break the rules themselves, the name may break them still.
    static bool MakeLegalGuiName(cow_String& name, const char* replacements);

    /// The name with an underscore for everything but letters, digits, "_", "-" and ".", and one before it when it is
    /// reserved on some system (CON, nul.txt, ..) or empty. `name` itself stays as it is.
    static cow_String MakeLegalFileName(cow_String& name);

private:
    void Test(omu_BrenowNameEnum kind) const;
    void TestKerName() const;
    void TestKerJobName() const;
    void TestKerModelName() const;
    void TestGuiName() const;
    void TestGuiJobName() const;
    void TestGuiModelName() const;
    void TestStepName() const noexcept {}

    cow_String m_name;
    omu_BrenowNameEnum m_kind = KER_NAME;
};
