#pragma once

#include "omu_Arguments.h"
#include "omu_InterfaceObj.h"
#include "omu_PrimNumber.h"

#include "cow_List.h"

/// A kernel object with 20 methods on two levels; `measure` is the one that is called.
class MeasuredBase : public omu_InterfaceObj
{
public:
    MeasuredBase()
    {
        constexpr omu_Method other = omu_AsMethod<&MeasuredBase::Other>;
        static constexpr methodTable methods[] = {
            {"area", "", other},
            {"copy", "", other},
            {"delete", "", other},
            {"describe", "", other},
            {"edges", "", other},
            {"faces", "", other},
            {"hide", "", other},
            {"nodes", "", other},
            {"rename", "", other},
            {"show", "", other},
            {},
        };
        DescribeType("MeasuredBase", methods, nullptr);
    }
    omu_Primitive* Copy() const override { return nullptr; }

private:
    omu_Primitive* Other(omu_Arguments&) { return nullptr; }
};

class Measured final : public MeasuredBase
{
public:
    Measured()
    {
        constexpr omu_Method other = omu_AsMethod<&Measured::Another>;
        static constexpr methodTable methods[] = {
            {"assign", "", other},
            {"bound", "", other},
            {"elements", "", other},
            {"loads", "", other},
            {"measure", "", omu_AsMethod<&Measured::Measure>},
            {"merge", "", other},
            {"mirror", "", other},
            {"rotate", "", other},
            {"split", "", other},
            {"volume", "", other},
            {},
        };
        DescribeType("Measured", methods, nullptr);
    }

private:
    omu_Primitive* Another(omu_Arguments&) { return nullptr; }

    omu_Primitive* Measure(omu_Arguments& arguments)
    {
        int count = 0;
        double width = 0.0;
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
        arguments.End("measure");
        int sum = count + name.Length() + (flag ? 1 : 0);
        for (const int label : labels) {
            sum += label;
        }
        return new omu_PrimNumber(width + sum);
    }
};
