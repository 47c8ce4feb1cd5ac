#pragma once

#include "py_ref.h"

#include "omu_PrimHolder.h"

class omu_Arguments;
class omu_InterfaceObj;

// The journal of what a user's script did: a Python script that does it again. It holds the outermost calls and
// assignments that succeeded, each written when it is done, with full paths, so that running it in a fresh process
// rebuilds the same model. Names that an object does not want journaled are left out.

/// Adds startJournal and stopJournal to the module. False with a Python error set.
bool pyAddJournal(PyObject* module);

/// Tells the journal that scripts find the kernel object by importing `name` from `module`; a Python error is set when it
/// answers false.
bool pyAnnounceRoot(const char* module, const char* name, const omu_InterfaceObj& object);

/// The variable that means a kernel object in the journal, when it is in no model yet and only a script has it.
///
/// Ownership: of the Python object that has the kernel object.
struct PyJournalName;
void pyDropJournalName(PyJournalName* name) noexcept;

/// While one exists, pyFromPython makes of a Python value what the journal writes for it.
class PyJournalRendering
{
public:
    PyJournalRendering() noexcept;
    PyJournalRendering(const PyJournalRendering&) = delete;
    PyJournalRendering& operator=(const PyJournalRendering&) = delete;
    ~PyJournalRendering() { --count; }

    static bool IsOn() noexcept { return count != 0; }

    /// What the journal writes for a text of a kind that Python has no kind of its own for; null for a constant that
    /// reads as its name, which the journal then defines before the line.
    static omu_PrimHolder ForText(PyObject* value, const cow_String& text);
    /// The variable of a kernel object that has one; null for an object that its own text leads to.
    static omu_PrimHolder ForObject(const omu_InterfaceObj& object, const PyJournalName* variable);

private:
    static int count;
};

/// One call or assignment from a script, for as long as it lasts. It is written when it is the outermost one and Commit
/// is reached.
class PyJournalEntry
{
public:
    PyJournalEntry() noexcept { ++depth; }
    PyJournalEntry(const PyJournalEntry&) = delete;
    PyJournalEntry& operator=(const PyJournalEntry&) = delete;
    ~PyJournalEntry() { --depth; }

    /// Whether the use of `name` on the object is to be written: then Describe... comes before it, Commit after it.
    bool IsWanted(const omu_InterfaceObj& object, const char* name) const;

    /// `variable` is the object's own, or null; `arguments` were made under a PyJournalRendering.
    void DescribeCall(const omu_InterfaceObj& object, const PyJournalName* variable, const char* method,
                      omu_Arguments& arguments);
    void DescribeAssignment(const omu_InterfaceObj& object, const PyJournalName* variable, const char* member,
                            omu_PrimHolder value);

    void DescribeDeletion(const omu_InterfaceObj& object, const PyJournalName* variable, const char* member);

    bool IsDescribed() const noexcept { return m_isDescribed; }

    /// Writes what was described, if anything was. A result that only the script has gets a variable, which goes to
    /// `resultVariable`; for any other result that is null. A journal that can no longer be written is closed with a
    /// warning. False with a Python error set, when that warning was made an error.
    bool Commit(const omu_InterfaceObj* result, PyJournalName** resultVariable);

private:
    void Describe(const omu_InterfaceObj& object, const PyJournalName* variable, cow_String command);

    static int depth;

    bool m_isDescribed = false;
    bool m_runs = true; // false: the line has an object for which the journal has no text
    cow_String m_command;
};
