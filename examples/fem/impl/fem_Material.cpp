#include "fem_Material.h"

#include "omu_Arguments.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_RangeChecker.h"

namespace
{

double CheckedDensity(double density)
{
    omu_RangeChecker::CheckGreaterThan("density", 0.0, /*inclusive=*/false, density);
    return density;
}

} // namespace

fem_Material::fem_Material(const omu_InterfaceObj& model, const fem_SubstanceConstant& substance, double density)
    : fem_Named(model, "materials", substance.GetString()), m_substance(substance), m_density(CheckedDensity(density))
{
    static constexpr memberTable members[] = {
        {"name", "-> vexomu.Constant: STEEL, ALUMINUM or TITANIUM.", omu_AsGetter<&fem_Material::GetSubstance>,
         nullptr},
        {"density", "-> float: In tonnes per cubic millimetre.", omu_AsGetter<&fem_Material::GetDensity>,
         omu_AsMethod<&fem_Material::SetDensity>},
        {},
    };
    DescribeType("Material", nullptr, members);
}

omu_Primitive* fem_Material::GetDensity()
{
    return new omu_PrimNumber(m_density);
}

omu_Primitive* fem_Material::SetDensity(omu_Arguments& arguments)
{
    double density = 0.0;
    arguments.Begin();
    arguments.Get(density);
    arguments.End("density");
    m_density = CheckedDensity(density);
    return new omu_PrimNone;
}
