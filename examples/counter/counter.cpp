#include "omu_Arguments.h"
#include "omu_PrimNumber.h"
#include "omu_RangeErrorException.h"
#include "vexomu_python.h"

class Counter final : public omu_InterfaceObj
{
public:
    Counter()
    {
        static constexpr methodTable methods[] = {
            {"add", "add(amount=1): counts on; the new value.", omu_AsMethod<&Counter::Add>}, {}};
        static constexpr memberTable members[] = {{"value", "", omu_AsGetter<&Counter::GetValue>, nullptr}, {}};
        DescribeType("Counter", methods, members);
    }
    omu_Primitive* Copy() const override { return new Counter(*this); }

private:
    omu_Primitive* Add(omu_Arguments& arguments)
    {
        int amount = 1;
        arguments.Begin();
        arguments.Optional();
        arguments.Get(amount, "amount");
        arguments.End("add");
        if (amount < 1) {
            omu_RangeErrorException("amount", 1, omu_INCLUSIVE, 0, omu_NO_RANGE).Throw("counter", __LINE__);
        }
        m_value += amount;
        return GetValue();
    }
    omu_Primitive* GetValue() { return new omu_PrimNumber(m_value); }
    int m_value = 0;
};

PyMODINIT_FUNC PyInit_counter()
{
    return vexomu_NewModule("counter", "Counts.", {{"counter", new Counter}});
}
