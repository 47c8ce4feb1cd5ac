#include "../measured_object.h"
#include "vexomu_python.h"

#include "omu_PrimArray.h"
#include "omu_PrimNone.h"

namespace
{

/// Keeps a numeric array and gives it back.
class ArrayStore final : public omu_InterfaceObj
{
public:
    ArrayStore()
    {
        static constexpr methodTable methods[] = {
            {"keep", "keep(array)", omu_AsMethod<&ArrayStore::Keep>},
            {"give", "give(): the array.", omu_AsMethod<&ArrayStore::Give>},
            {},
        };
        DescribeType("ArrayStore", methods, nullptr);
    }
    omu_Primitive* Copy() const override { return nullptr; }

private:
    omu_Primitive* Keep(omu_Arguments& arguments)
    {
        arguments.Begin();
        arguments.Get(m_array, "array");
        arguments.End("keep");
        return new omu_PrimNone;
    }
    omu_Primitive* Give(omu_Arguments&) { return m_array.Copy(); }

    omu_PrimArray m_array;
};

} // namespace

PyMODINIT_FUNC PyInit_bench_kernel()
{
    return vexomu_NewModule("bench_kernel", "The kernel objects that the benchmarks call.",
                            {{"measured", new Measured}, {"store", new ArrayStore}});
}
