// A kernel for the tests of the binding: it hands values back, fails on request, and owns objects that can go away.

#include "vexomu_python.h"

#include "../../omu/ExceptionClasses.h"
#include "cow_List.h"
#include "nex_TextException.h"
#include "omu_Arguments.h"
#include "omu_DictIntObjABC.h"
#include "omu_ObjectRef.h"
#include "omu_PrimBool.h"
#include "omu_PrimExpr.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"
#include "omu_SeqIntObj.h"
#include "uti_SystemException.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace
{

/// The one argument of a call.
template <class T> T Only(omu_Arguments& arguments, const char* method)
{
    T value{};
    arguments.Begin();
    arguments.Get(value);
    arguments.End(method);
    return value;
}

/// Its name can be read and written, its size only read.
class Box : public omu_InterfaceObj
{
public:
    explicit Box(const cow_String& name, int size = 30) : m_name(name), m_size(size)
    {
        static constexpr methodTable methods[] = {{"describe", "What the box is.", omu_AsMethod<&Box::Describe>}, {}};
        static constexpr memberTable members[] = {
            {"name", "The name on the label.", omu_AsGetter<&Box::GetName>, omu_AsMethod<&Box::SetName>},
            {"size", "Edge length in mm.", omu_AsGetter<&Box::GetSize>, nullptr},
            {}};
        static constexpr deprecatedMemberTable deprecated[] = {
            {"label", "The name.", omu_AsGetter<&Box::GetName>, nullptr, "name", "2.0"}, {}};
        DescribeType("Box", methods, members, nullptr, deprecated);
    }

    cow_String AsString(int) const override { return "shelf.box('" + m_name + "')"; }
    omu_Primitive* Copy() const override { return new Box(*this); }

protected:
    omu_Primitive* Describe(omu_Arguments& arguments)
    {
        arguments.Begin();
        arguments.End("describe");
        return new omu_PrimString("a box named " + m_name);
    }

private:
    omu_Primitive* GetName() { return new omu_PrimString(m_name); }
    omu_Primitive* GetSize() { return new omu_PrimNumber(m_size); }
    omu_Primitive* SetName(omu_Arguments& arguments)
    {
        m_name = Only<cow_String>(arguments, "name");
        return new omu_PrimNone;
    }

    cow_String m_name;
    int m_size;
};

/// Redeclares a method of its base.
class PaintedBox final : public Box
{
public:
    explicit PaintedBox(const cow_String& name) : Box(name)
    {
        static constexpr methodTable methods[] = {
            {"describe", "What the box is, and its paint.", omu_AsMethod<&PaintedBox::DescribePaint>}, {}};
        DescribeType("PaintedBox", methods, nullptr);
    }

private:
    omu_Primitive* DescribePaint(omu_Arguments&) { return new omu_PrimString("painted"); }
};

constexpr std::pair<std::string_view, void (*)()> failures[] = {
    {"value", [] { omu_ValueErrorException("bad value").Throw("probe", 1); }},
    {"key", [] { omu_KeyErrorException("no 'such' key", "such").Throw("probe", 1); }},
    {"index", [] { omu_IndexErrorException("index 7").Throw("probe", 1); }},
    {"name", [] { omu_NameErrorException("no name").Throw("probe", 1); }},
    {"zero", [] { omu_ZeroDivisionErrorException("by zero").Throw("probe", 1); }},
    {"overflow", [] { omu_OverflowErrorException("too big").Throw("probe", 1); }},
    {"attribute",
     [] { omu_AttributeErrorException(omu_AttributeErrorException::READ_ONLY_ATTRIBUTES).Throw("probe", 1); }},
    {"access", [] { omu_AccessErrorException("part").Throw("probe", 1); }},
    {"color", [] { omu_ColorErrorException("blurple").Throw("probe", 1); }},
    {"font", [] { omu_FontErrorException("wingding").Throw("probe", 1); }},
    {"brename", [] { omu_BreNameErrorException(omu_BreNameErrorException::EMPTY).Throw("probe", 1); }},
    {"text", [] { nex_TextException("plain text").Throw("probe", 1); }},
    {"system", [] { uti_SystemException("open", 2, "\x80").Throw("probe", 1); }},
    {"memory", [] { throw std::bad_alloc(); }},
    {"std", [] { throw std::out_of_range("std text"); }},
    {"foreign", [] { throw 42; }},
    {"range", [] { omu_RangeErrorException("width", 1, omu_INCLUSIVE, 10, omu_NOT_INCLUSIVE).Throw("probe", 1); }},
    {"root", [] { nex_CommandException().Throw("probe", 1); }},
};

/// A root object of the module.
class Shelf final : public omu_InterfaceObj
{
public:
    Shelf()
    {
        static constexpr methodTable methods[] = {
            {"echo", "Its argument.", omu_AsMethod<&Shelf::Echo>},
            {"call", "Takes what the benchmarks take.", omu_AsMethod<&Shelf::Call>},
            {"protocol", "Reads an argument list step by step.", omu_AsMethod<&Shelf::Protocol>},
            {"fail", "Fails as its argument says.", omu_AsMethod<&Shelf::Fail>},
            {"constant", "ON or OFF.", omu_AsMethod<&Shelf::Constant>},
            {"expression", "A value that has no Python kind.", omu_AsMethod<&Shelf::Expression>},
            {"add", "A new box; painted=True for a painted one.", omu_AsMethod<&Shelf::Add>},
            {"box", "The box.", omu_AsMethod<&Shelf::GetBox>},
            {"loose", "A new box that the shelf does not keep.", omu_AsMethod<&Shelf::Loose>},
            {"remove", "Deletes the box.", omu_AsMethod<&Shelf::Remove>},
            {"holds", "Whether the argument is the shelf's box.", omu_AsMethod<&Shelf::Holds>},
            {},
        };
        static constexpr deprecatedMethodTable deprecated[] = {
            {"put", "Adds a box.", omu_AsMethod<&Shelf::Add>, "add", "2.0"}, {}};
        DescribeType("Shelf", methods, nullptr, deprecated);
    }

    omu_Primitive* Copy() const override { return nullptr; } // one per process

private:
    omu_Primitive* Echo(omu_Arguments& arguments) { return arguments.Index(0)->Copy(); }

    omu_Primitive* Call(omu_Arguments& arguments)
    {
        int count = 0;
        double width = 0;
        cow_String name;
        cow_List<int> labels;
        bool flag = false;
        arguments.Begin();
        arguments.Get(count, "count");
        arguments.Get(width, "width");
        arguments.Get(name, "name");
        arguments.Optional();
        arguments.Get(labels, "labels");
        arguments.Get(flag, "flag");
        arguments.End("call");
        auto result = std::make_unique<omu_PrimTuple>(5);
        result->Put(count);
        result->Put(width);
        result->Put(name);
        result->Put(labels.Length());
        result->Put(flag ? 1 : 0);
        return result.release();
    }

    /// The step "(int|text)[:keyword]" is a Get, "begin", "optional" and "alternative" are what they say.
    static void Step(omu_Arguments& call, std::string_view step, omu_PrimTuple& results)
    {
        const std::size_t colon = step.find(':');
        const std::string_view kind = step.substr(0, colon);
        const auto get = [&](auto value) {
            colon == std::string_view::npos ? call.Get(value) : call.Get(value, step.substr(colon + 1));
            results.Put(value);
        };
        if (kind == "int") {
            get(-1);
        } else if (kind == "text") {
            get(cow_String("-1"));
        } else if (kind == "alternative") {
            results.Put(call.Alternative() ? 1 : 0);
        } else {
            kind == "begin" ? call.Begin() : call.Optional();
            results.Put(0);
        }
    }

    /// protocol(positional, keywords, steps): what each step gave and the two answers after it, then what End throws.
    omu_Primitive* Protocol(omu_Arguments& arguments)
    {
        omu_PrimTuple positional;
        omu_PrimDictionary<cow_String> keywords;
        cow_List<cow_String> steps;
        arguments.Begin();
        arguments.Get(positional);
        arguments.Get(keywords);
        arguments.Get(steps);
        arguments.End("protocol");
        omu_Arguments call(positional.Length());
        for (const omu_PrimHolder& value : positional) {
            call.Put(value);
        }
        for (const auto& [name, value] : keywords.GetEntries()) {
            call.Put(value, name);
        }
        auto results = std::make_unique<omu_PrimList>(3 * steps.Length() + 1);
        for (const cow_String& step : steps) {
            Step(call, step, *results);
            results->Put(call.ErrorOnPrevious() ? 1 : 0);
            results->Put(call.Error() ? 1 : 0);
        }
        cow_String end;
        try {
            call.End("f");
        } catch (const omu_TypeErrorException& error) {
            end = error.File() + ":" + cow_String(error.Line()) + " " + error.JournalMessage();
        }
        results->Put(end);
        return results.release();
    }

    omu_Primitive* Fail(omu_Arguments& arguments)
    {
        const cow_String kind = Only<cow_String>(arguments, "fail");
        for (const auto& [name, fail] : failures) {
            if (name == kind.view()) {
                fail();
            }
        }
        return nullptr;
    }

    omu_Primitive* Constant(omu_Arguments& arguments)
    {
        omu_PrimBool<2> value(false);
        arguments.Begin();
        arguments.Get(value, "value");
        arguments.End("constant");
        return value.Copy();
    }

    omu_Primitive* Expression(omu_Arguments&) { return new omu_PrimExpr("1 + 1"); }

    omu_Primitive* Add(omu_Arguments& arguments)
    {
        cow_String name;
        bool painted = false;
        arguments.Begin();
        arguments.Get(name, "name");
        arguments.Optional();
        arguments.Get(painted, "painted");
        arguments.End("add");
        m_box = painted ? std::make_unique<PaintedBox>(name) : std::make_unique<Box>(name);
        return new omu_ObjectRef(*m_box);
    }

    omu_Primitive* GetBox(omu_Arguments&) { return new omu_ObjectRef(*m_box); }
    omu_Primitive* Loose(omu_Arguments&) { return new Box("loose"); }

    omu_Primitive* Remove(omu_Arguments&)
    {
        m_box.reset();
        return nullptr;
    }

    omu_Primitive* Holds(omu_Arguments& arguments)
    {
        arguments.Begin();
        const omu_InterfaceObj* const box = arguments.Get("Box", "box", nullptr);
        arguments.End("holds");
        return new omu_PrimNumber(box == m_box.get() ? 1 : 0);
    }

    std::unique_ptr<Box> m_box;
};

/// A pair of numbers that scripts calculate with; no model has it.
class Vector final : public omu_InterfaceObj
{
public:
    Vector(double x, double y) : m_x(x), m_y(y)
    {
        static constexpr methodTable methods[] = {
            {"scale", "scale(factor): changes the vector.", omu_AsMethod<&Vector::Scale>}, {}};
        DescribeType("Vector", methods, nullptr);
    }
    double X() const noexcept { return m_x; }
    double Y() const noexcept { return m_y; }

    omu_Primitive* Copy() const override { return new Vector(*this); }
    omu_Primitive* Coerce(omu_Arguments& arguments) override
    {
        const auto both = Only<double>(arguments, "Vector");
        return new Vector(both, both);
    }
    omu_Primitive* Cast(omu_Arguments& arguments) override
    {
        return Only<cow_String>(arguments, "cast") == "float" ? Absolute() : nullptr;
    }
    omu_Primitive* Absolute() override { return new omu_PrimNumber(std::hypot(m_x, m_y)); }
    omu_Primitive* UnaryNegative() override { return new Vector(-m_x, -m_y); }
    omu_Primitive* AddOperation(omu_InterfaceObj* other) override
    {
        const auto& right = static_cast<const Vector&>(*other);
        return new Vector(m_x + right.m_x, m_y + right.m_y);
    }
    omu_Primitive* SubOperation(omu_InterfaceObj* other) override
    {
        const auto& right = static_cast<const Vector&>(*other);
        return new Vector(m_x - right.m_x, m_y - right.m_y);
    }
    int NonZero() const override { return m_x != 0 || m_y != 0 ? 1 : 0; }

private:
    omu_Primitive* Scale(omu_Arguments& arguments)
    {
        const auto factor = Only<double>(arguments, "scale");
        m_x *= factor;
        m_y *= factor;
        return nullptr;
    }

    double m_x;
    double m_y;
};

/// A root object that keeps what is done to it.
class Ledger final : public omu_InterfaceObj
{
public:
    Ledger()
    {
        static constexpr methodTable methods[] = {
            {"record", "record(value): notes the value and its type.", omu_AsMethod<&Ledger::Record>},
            {"read", "read(): all notes.", omu_AsMethod<&Ledger::Read>},
            {"vector", "vector(x, y=0.0): a new vector.", omu_AsMethod<&Ledger::NewVector>},
            {"point", "point(where): notes a vector.", omu_AsMethod<&Ledger::Point>},
            {"page", "page(): the ledger itself.", omu_AsMethod<&Ledger::Page>},
            {},
        };
        static constexpr memberTable members[] = {
            {"title", "The ledger's title.", omu_AsGetter<&Ledger::GetTitle>, omu_AsMethod<&Ledger::SetTitle>}, {}};
        DescribeType("Ledger", methods, members);
        DoNotJournal("read");
    }
    omu_Primitive* Copy() const override { return nullptr; }
    cow_String AsString(int) const override { return "ledger"; }

private:
    omu_Primitive* Record(omu_Arguments& arguments)
    {
        if (arguments.Length() != 1 || arguments[0]->IsType('<')) {
            nex_TextException("record takes one value that can be kept").Throw("ledger", __LINE__);
        }
        m_notes.Append(arguments[0]);
        m_notes.Append(omu_Hold(arguments[0]->TypeString()));
        return nullptr;
    }
    omu_Primitive* Read(omu_Arguments&)
    {
        auto notes = std::make_unique<omu_PrimTuple>(m_notes.Length());
        for (const omu_PrimHolder& note : m_notes) {
            notes->Put(note);
        }
        return notes.release();
    }
    omu_Primitive* NewVector(omu_Arguments& arguments)
    {
        double x = 0;
        double y = 0;
        arguments.Begin();
        arguments.Get(x, "x");
        arguments.Optional();
        arguments.Get(y, "y");
        arguments.End("vector");
        return new Vector(x, y);
    }
    omu_Primitive* Point(omu_Arguments& arguments)
    {
        arguments.Begin();
        const omu_InterfaceObj* const where = arguments.Get("Vector", "where", nullptr);
        arguments.End("point");
        const auto& vector = static_cast<const Vector&>(where->Resolve());
        m_notes.Append(omu_Hold(vector.X()));
        m_notes.Append(omu_Hold(vector.Y()));
        return nullptr;
    }
    omu_Primitive* Page(omu_Arguments&) { return new omu_ObjectRef(*this); }

    omu_Primitive* GetTitle() { return new omu_PrimString(m_title); }
    omu_Primitive* SetTitle(omu_Arguments& arguments)
    {
        m_title = Only<cow_String>(arguments, "title");
        return new omu_PrimNone;
    }

    cow_List<omu_PrimHolder> m_notes;
    cow_String m_title;
};

template <class K> class Rack final : public omu_DictIntObjABC<K>
{
public:
    Rack(const char* path, std::initializer_list<K> keys) : m_path(path)
    {
        for (const K& key : keys) {
            Add(key, static_cast<int>(m_boxes.size()));
        }
    }
    cow_String Repr() const override { return m_path; }
    omu_Primitive* Copy() const override { return nullptr; }
    int Length() const override { return static_cast<int>(m_boxes.size()); }
    omu_Primitive* Value(const K& key) const override
    {
        const auto found = std::find_if(m_boxes.begin(), m_boxes.end(), HasThis(key));
        return found != m_boxes.end() ? new omu_ObjectRef(*found->second) : nullptr;
    }
    bool SetValue(const K& key, const omu_Primitive& value) override
    {
        if (std::same_as<K, omu_PrimEnumBase> || !value.IsType('i')) {
            return false;
        }
        Remove(key);
        Add(key, static_cast<const omu_PrimNumber&>(value).GetInt());
        return true;
    }
    bool Remove(const K& key) override
    {
        return !std::same_as<K, omu_PrimEnumBase> && std::erase_if(m_boxes, HasThis(key)) > 0;
    }
    void Keys(cow_List<K>& keys) const override
    {
        for (const auto& [key, box] : m_boxes) {
            keys.Append(key);
        }
    }

private:
    void Add(const K& key, int size) { m_boxes.emplace_back(key, std::make_unique<Box>("", size)); }
    static auto HasThis(const K& key)
    {
        return [&key](const auto& entry) { return entry.first == key; };
    }

    cow_String m_path;
    std::vector<std::pair<K, std::unique_ptr<Box>>> m_boxes;
};

class Row final : public omu_SeqIntObj
{
public:
    explicit Row(cow_1DArray<int> sizes)
    {
        m_ids = std::move(sizes);
        m_length = m_ids.Length();
    }
    omu_Primitive* Copy() const override { return new Row(*this); }
    int Length() const override { return m_length; }
    omu_Primitive* Index(const int& index) const override { return new Box("", m_ids[index]); }
    omu_Primitive* Slice(const int& low, const int& high) const override
    {
        return new Row(cow_1DArray<int>(m_ids.begin() + low, m_ids.begin() + high));
    }
    omu_Primitive* Repeat(const int&) const override { return nullptr; }
    omu_Primitive* Concat(omu_SeqIntObj* other) const override
    {
        cow_1DArray<int> sizes = m_ids;
        for (const int size : static_cast<const Row*>(other)->m_ids) {
            sizes.Append(size);
        }
        return new Row(sizes);
    }
    int Remove(const int& index) override { return RemoveSlice(index, index + 1); }
    int RemoveSlice(const int& low, const int& high) override
    {
        for (int count = high - low; count > 0; --count) {
            m_ids.RemoveAt(low);
        }
        m_length = m_ids.Length();
        return 1;
    }
};

} // namespace

PyMODINIT_FUNC PyInit_probe()
{
    return vexomu_NewModule("probe", "A kernel for tests.",
                            {{"shelf", new Shelf},
                             {"ledger", new Ledger},
                             {"names", new Rack<cow_String>("names", {"a", "b"})},
                             {"numbers", new Rack<int>("numbers", {7, -1})},
                             {"shapes", new Rack<omu_PrimEnumBase>("shapes", {omu_PrimEnumBase("QUAD")})},
                             {"row", new Row({0, 1, 2, 3, 4})}});
}
