#include "fem_Material.h"

#include "cls_ClassRegistrar.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_WriteVisitor.h"
#include "omu_Arguments.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_RangeChecker.h"

namespace
{

const cls_FieldHandle SUBSTANCE("substance");
const cls_FieldHandle DENSITY("density");

double CheckedDensity(double density)
{
    omu_RangeChecker::CheckGreaterThan("density", 0.0, /*inclusive=*/false, density);
    return density;
}

} // namespace

fem_Material::fem_Material(const omu_InterfaceObj& model, const fem_SubstanceConstant& substance, double density)
    : fem_Material(model, substance, density, cls_Uid::AllocateUid())
{}

fem_Material::fem_Material(const omu_InterfaceObj& model, const cls_ReadVisitor& visitor)
    : fem_Material(model, fem_SubstanceConstant(cls_ReadVisitor(visitor, SUBSTANCE)),
                   visitor.Memento()->ReadDouble(DENSITY, 0.0), visitor.GetUid())
{}

fem_Material::fem_Material(const omu_InterfaceObj& model, const fem_SubstanceConstant& substance, double density,
                           const cls_Uid& uid)
    : fem_Named(model, "materials", substance.GetString(), uid), m_substance(substance),
      m_density(CheckedDensity(density))
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

void fem_Material::Register(cls_ClassRegistrar& registrar)
{
    registrar.CreateClassMD("Material", CLASS_ID, 1, nullptr, 1)
        .AddAttribute(SUBSTANCE, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE)
        .AddAttribute(DENSITY, cls_ATTRIBUTE_REAL, 1, cls_COLLECTION_NONE);
}

void fem_Material::DBWrite(const cls_WriteVisitor& visitor, fem_Save&) const
{
    if (visitor.StartWrite(CLASS_ID, Uid()) != 0) {
        m_substance.DBWrite(cls_WriteVisitor(visitor, SUBSTANCE, nullptr));
        visitor.Memento()->WriteDouble(DENSITY, m_density);
    }
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
