// A kernel for the tests of the binding: it hands values back, fails on request, and owns objects that can go away.

#include "vexomu_python.h"

#include "../../omu/ExceptionClasses.h"
#include "cow_List.h"
#include "nex_TextException.h"
#include "objects.h"
#include "omu_Arguments.h"
#include "omu_ObjectRef.h"
#include "omu_PrimBool.h"
#include "omu_PrimExpr.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimPath.h"
#include "omu_PrimString.h"
#include "omu_PrimTuple.h"
#include "omu_PrimType.h"
#include "uti_SystemException.h"

#include <memory>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace
{

/// An object that a Shelf owns; its name can be read and written, its size only read.
class Box : public omu_InterfaceObj
{
public:
    explicit Box(const cow_String& name) : m_name(name)
    {
        static constexpr methodTable methods[] = {
            {"describe", "What the box is.", omu_AsMethod<&Box::Describe>},
            {},
        };
        static constexpr memberTable members[] = {
            {"name", "The name on the label.", omu_AsGetter<&Box::GetName>, omu_AsMethod<&Box::SetName>},
            {"size", "Edge length in mm.", omu_AsGetter<&Box::GetSize>, nullptr},
            {},
        };
        static constexpr deprecatedMemberTable deprecated[] = {
            {"label", "The name.", omu_AsGetter<&Box::GetName>, nullptr, "name", "2.0"},
            {},
        };
        DescribeType("Box", methods, members, nullptr, deprecated);
    }

    cow_String AsString(int) const override { return "shelf.box('" + m_name + "')"; }
    omu_Primitive* Copy() const override { return new Box(m_name); }

protected:
    omu_Primitive* Describe(omu_Arguments& arguments)
    {
        arguments.Begin();
        arguments.End("describe");
        return new omu_PrimString("a box named " + m_name);
    }

private:
    omu_Primitive* GetName() { return new omu_PrimString(m_name); }
    omu_Primitive* GetSize() { return new omu_PrimNumber(30); }
    omu_Primitive* SetName(omu_Arguments& arguments)
    {
        cow_String name;
        arguments.Begin();
        arguments.Get(name);
        arguments.End("name");
        m_name = name;
        return new omu_PrimNone;
    }

    cow_String m_name;
};

/// Redeclares a method of its base.
class PaintedBox final : public Box
{
public:
    explicit PaintedBox(const cow_String& name) : Box(name)
    {
        static constexpr methodTable methods[] = {
            {"describe", "What the box is, and its paint.", omu_AsMethod<&PaintedBox::DescribePaint>},
            {},
        };
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

/// The root object of the module.
class Shelf final : public omu_InterfaceObj
{
public:
    Shelf()
    {
        static constexpr methodTable methods[] = {
            {"echo", "Its argument.", omu_AsMethod<&Shelf::Echo>},
            {"text", "The text of its arguments as a command text writes it.", omu_AsMethod<&Shelf::Text>},
            {"call", "Takes what the benchmarks take.", omu_AsMethod<&Shelf::Call>},
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
            {"put", "Adds a box.", omu_AsMethod<&Shelf::Add>, "add", "2.0"},
            {},
        };
        DescribeType("Shelf", methods, nullptr, deprecated);
    }

    omu_Primitive* Copy() const override { return nullptr; } // one per process

private:
    omu_Primitive* Echo(omu_Arguments& arguments) { return arguments.Index(0)->Copy(); }
    omu_Primitive* Text(omu_Arguments& arguments) { return new omu_PrimString(arguments.AsString(0)); }

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

    omu_Primitive* Fail(omu_Arguments& arguments)
    {
        cow_String kind;
        arguments.Begin();
        arguments.Get(kind, "kind");
        arguments.End("fail");
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

} // namespace

PyMODINIT_FUNC PyInit_probe()
{
    return vexomu_NewModule("probe", "A kernel for tests.",
                            {{"shelf", new Shelf},
                             {"ledger", NewLedger()},
                             {"names", NewNameRack()},
                             {"numbers", NewNumberRack()},
                             {"shapes", NewShapeRack()},
                             {"row", NewRow()}});
}
