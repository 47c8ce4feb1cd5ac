#include "py_journal.h"

#include "py_text_types.h"
#include "py_values.h"

#include "omu_Arguments.h"
#include "omu_Assignment.h"
#include "omu_InterfaceObj.h"
#include "omu_PrimExpr.h"
#include "omu_PrimString.h"
#include "omu_TempVariable.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

struct PyJournalName
{
    omu_TempVariable variable;
    unsigned int journal; // the variable means nothing in any other
};

namespace
{

/// A kernel object that scripts import.
struct Root
{
    std::string module;
    std::string name;
    const omu_InterfaceObj* object; // only compared: another may be made in its place once it is gone
};

PyObject* file = nullptr; // a raw binary file, so that every line is with the system when the call is done
unsigned int journal = 0; // counts the journals of the process
std::vector<Root> roots;
std::vector<cow_String> wantedConstants;  // by the line being made
bool isAllNamed = true;                   // whether there is a text for each object in the line being made
std::vector<cow_String> definedConstants; // in this journal, which every constant is but once

/// Whether the journal can have a variable for the constant: in capitals it is neither a word of the language nor the
/// name of anything else in the script but a root.
bool CanBeVariable(std::string_view constant)
{
    const auto isCapital = [](char character) { return character >= 'A' && character <= 'Z'; };
    const auto isWord = [&](char character) {
        return isCapital(character) || (character >= '0' && character <= '9') || character == '_';
    };
    return !constant.empty() && isCapital(constant[0]) && std::all_of(constant.begin(), constant.end(), isWord) &&
           std::none_of(roots.begin(), roots.end(), [&](const Root& root) { return root.name == constant; });
}

cow_String Quoted(const cow_String& text)
{
    // An argument list writes what reads back equal.
    omu_Arguments one(1);
    one.Put(text);
    return one.AsRepr();
}

/// The command in one line: control characters are within quotes, where kernels may not have escaped them.
cow_String InOneLine(const cow_String& command)
{
    cow_String line;
    for (const char character : command) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02x", byte);
            line += escape;
        } else {
            line.Append(character);
        }
    }
    return line;
}

/// Writes whole lines; false with a Python error set. Bytes that are no UTF-8 become escapes, inside the quotes in which
/// alone they can be.
bool Write(const cow_String& lines)
{
    const PyRef text(pyText(lines.view()));
    const PyRef bytes(text ? PyUnicode_AsEncodedString(text.Get(), "utf-8", "backslashreplace") : nullptr);
    if (!bytes) {
        return false;
    }
    for (Py_ssize_t start = 0; start < PyBytes_GET_SIZE(bytes.Get());) {
        const PyRef written(PyObject_CallMethod(file, "write", "y#", PyBytes_AS_STRING(bytes.Get()) + start,
                                                PyBytes_GET_SIZE(bytes.Get()) - start));
        const Py_ssize_t count = written && written.Get() != Py_None ? PyLong_AsSsize_t(written.Get()) : -1;
        if (count <= 0) {
            if (PyErr_Occurred() == nullptr) { // as from a pipe that is full and does not wait
                PyErr_SetString(PyExc_BlockingIOError, "the journal's file takes nothing for now");
            }
            return false;
        }
        start += count;
    }
    return true;
}

cow_String ImportLine(const Root& root)
{
    return cow_String("from ") + root.module + " import " + root.name + "\n";
}

/// False with a Python error set.
bool Close()
{
    const PyRef closing(std::exchange(file, nullptr));
    const PyRef closed(PyObject_CallMethod(closing.Get(), "close", nullptr));
    return static_cast<bool>(closed);
}

PyObject* StartJournal(PyObject*, PyObject* path)
{
    if (file != nullptr) {
        const PyRef name(PyObject_GetAttrString(file, "name"));
        PyErr_Format(PyExc_RuntimeError, "a journal is being written already: %S", name ? name.Get() : Py_None);
        return nullptr;
    }
    const PyRef io(PyImport_ImportModule("io"));
    file = io ? PyObject_CallMethod(io.Get(), "open", "Osi", path, "wb", 0) : nullptr;
    if (file == nullptr) {
        return nullptr;
    }
    ++journal;
    definedConstants = {"ON", "OFF", "TRUE", "FALSE"};
    cow_String head("from vexomu import *\n");
    for (const Root& root : roots) {
        head += ImportLine(root);
    }
    if (!Write(head)) {
        Py_CLEAR(file);
        return nullptr;
    }
    Py_RETURN_NONE;
}

PyObject* StopJournal(PyObject*, PyObject*)
{
    if (file == nullptr) {
        PyErr_SetString(PyExc_RuntimeError, "no journal is being written");
        return nullptr;
    }
    return Close() ? Py_NewRef(Py_None) : nullptr;
}

PyMethodDef functions[] = {
    {"startJournal", StartJournal, METH_O,
     "startJournal(path, /)\n--\n\nWrites what succeeds from here on into the file, as a script that does it again."},
    {"stopJournal", StopJournal, METH_NOARGS, "stopJournal()\n--\n\nCloses the journal."},
    {},
};

omu_PrimHolder Expression(const cow_String& text)
{
    return omu_PrimHolder(new omu_PrimExpr(text));
}

bool IsCurrent(const PyJournalName* variable)
{
    return variable != nullptr && variable->journal == journal;
}

/// What leads a script to the object: its variable, or its text. An object whose text is no path can be one that scripts
/// import; in brackets stands what has no path at all.
cow_String PathOf(const omu_InterfaceObj& object, const PyJournalName* variable)
{
    if (IsCurrent(variable)) {
        return variable->variable;
    }
    const cow_String text = object.Repr();
    const auto isIt = [&object](const Root& root) { return root.object == &object; };
    const auto root = text.StartsWith("<") ? std::find_if(roots.begin(), roots.end(), isIt) : roots.end();
    return root != roots.end() ? cow_String(root->name) : text;
}

/// False for what only a script has, which is in no model.
bool HasPath(const omu_InterfaceObj& object, const PyJournalName* variable)
{
    return variable == nullptr && !PathOf(object, variable).StartsWith("<");
}

/// The line defines the constants that it is the first to use.
cow_String TakeDefinitions()
{
    cow_String lines;
    for (const cow_String& name : std::exchange(wantedConstants, {})) {
        if (std::find(definedConstants.begin(), definedConstants.end(), name) == definedConstants.end()) {
            definedConstants.push_back(name);
            lines += name + " = Constant" + Quoted(name) + "\n";
        }
    }
    return lines;
}

} // namespace

PyJournalRendering::PyJournalRendering() noexcept
{
    if (count++ == 0) {
        wantedConstants.clear();
        isAllNamed = true;
    }
}

int PyJournalRendering::count = 0;
int PyJournalEntry::depth = 0;

bool pyAddJournal(PyObject* module)
{
    return PyModule_AddFunctions(module, functions) == 0;
}

bool pyAnnounceRoot(const char* module, const char* name, const omu_InterfaceObj& object)
{
    roots.push_back({module, name, &object});
    return file == nullptr || Write(ImportLine(roots.back()));
}

void pyDropJournalName(PyJournalName* name) noexcept
{
    delete name;
}

omu_PrimHolder PyJournalRendering::ForText(PyObject* value, const cow_String& text)
{
    switch (pyTextKindOf(value)) {
    case PyTextKind::PATH:
        return Expression("Path" + Quoted(text));
    case PyTextKind::TYPE_NAME:
        return Expression("TypeName" + Quoted(text));
    case PyTextKind::CONSTANT:
        if (!CanBeVariable(text)) {
            return Expression("Constant" + Quoted(text));
        }
        wantedConstants.push_back(text);
        break;
    case PyTextKind::NONE:
        break;
    }
    return {};
}

omu_PrimHolder PyJournalRendering::ForObject(const omu_InterfaceObj& object, const PyJournalName* variable)
{
    const cow_String path = PathOf(object, variable);
    if (IsCurrent(variable) || path != object.Repr()) {
        return Expression(path);
    }
    isAllNamed = isAllNamed && HasPath(object, variable);
    return {};
}

bool PyJournalEntry::IsWanted(const omu_InterfaceObj& object, const char* name) const
{
    return file != nullptr && depth == 1 && object.ShouldJournal(name);
}

void PyJournalEntry::Describe(const omu_InterfaceObj& object, const PyJournalName* variable, cow_String command)
{
    m_runs = isAllNamed && (IsCurrent(variable) || HasPath(object, variable));
    m_command = InOneLine(command);
    m_isDescribed = true;
}

void PyJournalEntry::DescribeCall(const omu_InterfaceObj& object, const PyJournalName* variable, const char* method,
                                  omu_Arguments& arguments)
{
    Describe(object, variable, object.CommandPath(PathOf(object, variable), method, arguments));
}

void PyJournalEntry::DescribeAssignment(const omu_InterfaceObj& object, const PyJournalName* variable,
                                        const char* member, omu_PrimHolder value)
{
    omu_Arguments one(1);
    one.Put(std::move(value));
    const cow_String inParentheses = one.AsRepr();
    const omu_Assignment assignment(PathOf(object, variable) + "." + member,
                                    inParentheses.Substring(1, inParentheses.Length() - 1));
    Describe(object, variable, assignment.CommandText());
}

void PyJournalEntry::DescribeDeletion(const omu_InterfaceObj& object, const PyJournalName* variable, const char* member)
{
    const PyJournalRendering rendering;
    Describe(object, variable, "del " + PathOf(object, variable) + "." + member);
}

bool PyJournalEntry::Commit(const omu_InterfaceObj* result, PyJournalName** resultVariable)
{
    if (!m_isDescribed || file == nullptr) {
        return true;
    }
    std::unique_ptr<PyJournalName> variable;
    cow_String line = m_command;
    if (result != nullptr && m_runs) {
        const cow_String own = result->JournalVariable();
        cow_String base = own.IsEmpty() ? result->ExposedTypeName() : own;
        base.Set(0, static_cast<char>(std::tolower(static_cast<unsigned char>(base[0]))));
        variable.reset(new PyJournalName{omu_TempVariable(base), journal});
        line = omu_Assignment(variable->variable, m_command).CommandText();
    }
    line = TakeDefinitions() + (m_runs ? "" : "# ") + line + "\n";
    if (!Write(line)) {
        // The call is done and cannot be undone; the user learns that the journal ends before it.
        const PyRef closing(std::exchange(file, nullptr));
        PyErr_WriteUnraisable(closing.Get());
        return PyErr_WarnEx(PyExc_RuntimeWarning, "the journal cannot be written any more and was closed", 1) == 0;
    }
    if (resultVariable != nullptr) {
        *resultVariable = variable.release();
    }
    return true;
}
