#include "objects.h"

#include "cow_List.h"
#include "nex_TextException.h"
#include "omu_Arguments.h"
#include "omu_ObjectRef.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"
#include "omu_PrimTuple.h"

#include <cmath>
#include <memory>

namespace
{

/// A pair of numbers that scripts calculate with; no model has it.
class Vector final : public omu_InterfaceObj
{
public:
    Vector(double x, double y) : m_x(x), m_y(y)
    {
        static constexpr methodTable methods[] = {
            {"scale", "scale(factor): changes the vector.", omu_AsMethod<&Vector::Scale>},
            {},
        };
        DescribeType("Vector", methods, nullptr);
    }
    double X() const noexcept { return m_x; }
    double Y() const noexcept { return m_y; }

    omu_Primitive* Copy() const override { return new Vector(*this); }
    omu_Primitive* Coerce(omu_Arguments& arguments) override
    {
        double both = 0;
        arguments.Begin();
        arguments.Get(both);
        arguments.End("Vector");
        return new Vector(both, both);
    }
    omu_Primitive* Cast(omu_Arguments& arguments) override
    {
        cow_String type;
        arguments.Begin();
        arguments.Get(type);
        arguments.End("cast");
        return type == "float" ? new omu_PrimNumber(std::hypot(m_x, m_y)) : nullptr;
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
        double factor = 1;
        arguments.Begin();
        arguments.Get(factor, "factor");
        arguments.End("scale");
        m_x *= factor;
        m_y *= factor;
        return new omu_PrimNone;
    }

    double m_x;
    double m_y;
};

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
            {"title", "The ledger's title.", omu_AsGetter<&Ledger::GetTitle>, omu_AsMethod<&Ledger::SetTitle>},
            {},
        };
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
        return new omu_PrimNone;
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
        return new omu_PrimNone;
    }
    omu_Primitive* Page(omu_Arguments&) { return new omu_ObjectRef(*this); }

    omu_Primitive* GetTitle() { return new omu_PrimString(m_title); }
    omu_Primitive* SetTitle(omu_Arguments& arguments)
    {
        arguments.Begin();
        arguments.Get(m_title);
        arguments.End("title");
        return new omu_PrimNone;
    }

    cow_List<omu_PrimHolder> m_notes;
    cow_String m_title;
};

} // namespace

omu_InterfaceObj* NewLedger()
{
    return new Ledger;
}
