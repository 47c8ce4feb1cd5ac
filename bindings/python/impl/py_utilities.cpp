#include "py_utilities.h"

#include "py_errors.h"
#include "py_values.h"

#include "omu_KeyErrorException.h"
#include "rgx_funcs.h"
#include "uti_FormatMap.h"
#include "uti_SpawnSink.h"
#include "uti_SpawnSource.h"

#include <climits>
#include <exception>
#include <iterator>
#include <optional>
#include <thread>

namespace
{

constexpr const char* SOURCE = "bindings/python/impl/py_utilities";

/// A str argument as kernel text; IsValid() is false with a Python error set.
class Text
{
public:
    explicit Text(PyObject* value)
    {
        if (!PyUnicode_Check(value)) {
            PyErr_Format(PyExc_TypeError, "a str is needed, not %s", Py_TYPE(value)->tp_name);
            return;
        }
        const PyUtf8 utf8(value);
        if (utf8.IsValid()) {
            m_text = cow_String(utf8.view());
        }
    }
    bool IsValid() const noexcept { return m_text.has_value(); }
    const cow_String& operator*() const { return *m_text; }

private:
    std::optional<cow_String> m_text;
};

/// Lets other threads of the interpreter run for its lifetime.
class WithoutInterpreter
{
public:
    WithoutInterpreter() : m_state(PyEval_SaveThread()) {}
    WithoutInterpreter(const WithoutInterpreter&) = delete;
    WithoutInterpreter& operator=(const WithoutInterpreter&) = delete;
    ~WithoutInterpreter()
    {
        try {
            PyEval_RestoreThread(m_state);
        } catch (...) {
            pyHoldThread();
        }
    }

private:
    PyThreadState* m_state;
};

/// A tuple or a list of `count` texts, a new reference; null with a Python error set.
template <class TextAt> PyObject* NewTexts(bool isTuple, int count, TextAt textAt)
{
    PyRef result(isTuple ? PyTuple_New(count) : PyList_New(count));
    for (int i = 0; result && i < count; ++i) {
        PyObject* const text = pyText(textAt(i).view());
        if (text == nullptr) {
            return nullptr;
        }
        isTuple ? PyTuple_SET_ITEM(result.Get(), i, text) : PyList_SET_ITEM(result.Get(), i, text);
    }
    return result.Release();
}

PyObject* Match(PyObject*, PyObject* const* arguments, Py_ssize_t count)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&]() -> PyObject* {
        if (count != 2) {
            PyErr_SetString(PyExc_TypeError, "match(pattern, text)");
            return nullptr;
        }
        const Text pattern(arguments[0]);
        const Text text(arguments[pattern.IsValid() ? 1 : 0]);
        if (!pattern.IsValid() || !text.IsValid()) {
            return nullptr;
        }
        const rgx_ReIterator match = rgx_match(*pattern, *text);
        return match.IsMatched()
                   ? NewTexts(/*isTuple=*/true, match.GroupCount(), [&](int i) { return match.NthString(i); })
                   : Py_NewRef(Py_None);
    });
}

PyObject* Split(PyObject*, PyObject* const* arguments, Py_ssize_t count)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&]() -> PyObject* {
        if (count != 2) {
            PyErr_SetString(PyExc_TypeError, "split(pattern, text)");
            return nullptr;
        }
        const Text pattern(arguments[0]);
        const Text text(arguments[pattern.IsValid() ? 1 : 0]);
        if (!pattern.IsValid() || !text.IsValid()) {
            return nullptr;
        }
        const auto pieces = rgx_split(*pattern, *text);
        return NewTexts(/*isTuple=*/false, pieces.Length(), [&](int i) { return pieces[i]; });
    });
}

PyObject* Substitute(PyObject*, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"pattern", "text", "replacement", "count", nullptr};
    PyObject* texts[3] = {};
    int count = INT_MAX;
    if (PyArg_ParseTupleAndKeywords(arguments, keywords, "UUU|i:substitute", const_cast<char**>(names), &texts[0],
                                    &texts[1], &texts[2], &count) == 0) {
        return nullptr;
    }
    return pyGuard(static_cast<PyObject*>(nullptr), [&]() -> PyObject* {
        const Text pattern(texts[0]);
        const Text text(texts[1]);
        const Text replacement(texts[2]);
        return pattern.IsValid() && text.IsValid() && replacement.IsValid()
                   ? pyText(rgx_subn(*pattern, *text, *replacement, count).view())
                   : nullptr;
    });
}

constexpr const char* NOTATIONS[] = {"automatic", "engineering", "scientific"};

uti_FormatMap& Formats()
{
    return thr_ThreadSingleton<uti_FormatMap>::Instance();
}

PyObject* FormatNumber(PyObject*, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"value", "format", nullptr};
    double value = 0;
    const char* format = "defaultFormat";
    if (PyArg_ParseTupleAndKeywords(arguments, keywords, "d|s:formatNumber", const_cast<char**>(names), &value,
                                    &format) == 0) {
        return nullptr;
    }
    return pyGuard(static_cast<PyObject*>(nullptr), [&]() -> PyObject* {
        const uti_NumFormat* const found = Formats().Find(format);
        if (found == nullptr) {
            omu_KeyErrorException("no number format '" + cow_String(format) + "'", format).Throw(SOURCE, __LINE__);
        }
        return pyText(found->Format(value).view());
    });
}

PyObject* SetNumberFormat(PyObject*, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"name", "notation", "precision", "zeroDecimals", "keepPadding", nullptr};
    const char* name = nullptr;
    const char* notation = nullptr;
    int precision = 0;
    int zeroDecimals = 0;
    int keepPadding = 1;
    if (PyArg_ParseTupleAndKeywords(arguments, keywords, "ssi|ip:setNumberFormat", const_cast<char**>(names), &name,
                                    &notation, &precision, &zeroDecimals, &keepPadding) == 0) {
        return nullptr;
    }
    return pyGuard(static_cast<PyObject*>(nullptr), [&]() -> PyObject* {
        for (int i = 0; i < static_cast<int>(std::size(NOTATIONS)); ++i) {
            if (std::string_view(notation) == NOTATIONS[i]) {
                Formats().Insert(name, uti_NumFormat(i, precision, zeroDecimals, keepPadding != 0));
                Py_RETURN_NONE;
            }
        }
        PyErr_Format(PyExc_ValueError, "no notation '%s': it is automatic, engineering or scientific", notation);
        return nullptr;
    });
}

/// Names and values of the child's whole environment; false with a Python error set.
bool TakeEnvironment(PyObject* mapping, uti_Spawn::Environment& environment)
{
    const PyRef variables(PyDict_New()); // whose items are pairs, whatever a script's own mapping calls its items
    const PyRef items(variables && PyDict_Update(variables.Get(), mapping) == 0 ? PyDict_Items(variables.Get())
                                                                                : nullptr);
    if (!items) {
        return false;
    }
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(items.Get()); ++i) {
        PyObject* const item = PyList_GET_ITEM(items.Get(), i);
        const Text name(PyTuple_GET_ITEM(item, 0));
        if (!name.IsValid()) {
            return false;
        }
        if ((*name).IsEmpty() || (*name).Contains("=")) {
            PyErr_Format(PyExc_ValueError, "%R is no name of an environment variable", PyTuple_GET_ITEM(item, 0));
            return false;
        }
        const Text value(PyTuple_GET_ITEM(item, 1));
        if (!value.IsValid()) {
            return false;
        }
        environment.Insert(*name, *value);
    }
    return true;
}

struct Outcome
{
    cow_String output;
    int status;
};

Outcome Run(const cow_String& command, const uti_Spawn::Environment& environment)
{
    const WithoutInterpreter others;
    if (uti_Spawn::RedirectsOutput(command)) {
        return {cow_String(), uti_Spawn::AndWait(command, environment)};
    }
    uti_SpawnSource child(command, environment);
    const cow_String output = child.ReadAll();
    return {output, child.Reap(0)};
}

/// Writes the child's input and closes it.
template <class Child> void Feed(Child& child, const cow_String& input)
{
    try {
        child.Write(input.view());
    } catch (const std::exception&) {
        // The child stopped reading, as `head` does; what it says and its status are the answer.
    }
    child.CloseSink();
}

/// The child may wait for its output to be read before it reads on, so a thread of its own writes the input.
Outcome RunWithInput(const cow_String& command, const uti_Spawn::Environment& environment, const cow_String& input)
{
    const WithoutInterpreter others;
    if (uti_Spawn::RedirectsOutput(command)) {
        uti_SpawnSink child(command, environment);
        Feed(child, input);
        return {cow_String(), child.Reap(0)};
    }
    uti_SpawnSourceWithSink child(command, environment);
    std::thread writer([&child, &input] { Feed(child, input); });
    std::exception_ptr failure;
    cow_String output;
    try {
        output = child.ReadAll();
    } catch (...) {
        failure = std::current_exception();
        child.Kill(); // so that the writer comes to its end
    }
    writer.join();
    if (failure) {
        std::rethrow_exception(failure);
    }
    return {output, child.Reap(0)};
}

PyObject* RunProgram(PyObject*, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"command", "input", "env", nullptr};
    PyObject* command = nullptr;
    PyObject* input = Py_None;
    PyObject* env = Py_None;
    if (PyArg_ParseTupleAndKeywords(arguments, keywords, "U|OO:run", const_cast<char**>(names), &command, &input,
                                    &env) == 0) {
        return nullptr;
    }
    return pyGuard(static_cast<PyObject*>(nullptr), [&]() -> PyObject* {
        const Text text(command);
        uti_Spawn::Environment environment;
        if (!text.IsValid() || (env != Py_None && !TakeEnvironment(env, environment))) {
            return nullptr;
        }
        Outcome outcome;
        if (input == Py_None) {
            outcome = Run(*text, environment);
        } else {
            const Text given(input);
            if (!given.IsValid()) {
                return nullptr;
            }
            outcome = RunWithInput(*text, environment, *given);
        }
        const PyRef output(pyText(outcome.output.view()));
        return output ? Py_BuildValue("(iO)", outcome.status, output.Get()) : nullptr;
    });
}

template <class Function> PyCFunction AsFunction(Function* function)
{
    return reinterpret_cast<PyCFunction>(reinterpret_cast<void*>(function));
}

PyMethodDef functions[] = {
    {"match", AsFunction(Match), METH_FASTCALL,
     "match(pattern, text, /)\n--\n\nThe first match and its groups as a tuple, or None. Patterns are PCRE2's."},
    {"split", AsFunction(Split), METH_FASTCALL,
     "split(pattern, text, /)\n--\n\nThe pieces between matches; empty ones before a match are left out."},
    {"substitute", AsFunction(Substitute), METH_VARARGS | METH_KEYWORDS,
     "substitute(pattern, text, replacement, count=2147483647)\n--\n\n"
     "The text with matches replaced; $1 to $9, $&, $` and $' in the replacement are parts of the first match."},
    {"formatNumber", AsFunction(FormatNumber), METH_VARARGS | METH_KEYWORDS,
     "formatNumber(value, format='defaultFormat')\n--\n\nThe number in one of the named formats."},
    {"setNumberFormat", AsFunction(SetNumberFormat), METH_VARARGS | METH_KEYWORDS,
     "setNumberFormat(name, notation, precision, zeroDecimals=0, keepPadding=True)\n--\n\n"
     "Adds or changes a named format of this thread; the notation is 'automatic', 'engineering' or 'scientific'."},
    {"run", AsFunction(RunProgram), METH_VARARGS | METH_KEYWORDS,
     "run(command, input=None, env=None)\n--\n\n"
     "Runs a program and waits for it: its exit status and what it wrote. The command may redirect its errors, its "
     "output,"
     " of which nothing is returned then, and, without input, what it reads; env is the whole environment, that of this"
     " process when empty."},
    {},
};

} // namespace

bool pyAddUtilities(PyObject* module)
{
    return PyModule_AddFunctions(module, functions) == 0;
}
