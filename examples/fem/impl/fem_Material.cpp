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
const cls_FieldHandle ELASTIC_MODULUS("elasticModulus"); // from version 2 on

double CheckedDensity(double density)
{
    omu_RangeChecker::CheckGreaterThan("density", 0.0, /*inclusive=*/false, density);
    return density;
}

double CheckedModulus(double modulus)
{
    omu_RangeChecker::CheckGreaterThan("elasticModulus", 0.0, /*inclusive=*/true, modulus);
    return modulus;
}

} // namespace

fem_Material::fem_Material(const omu_InterfaceObj& model, const cls_ReadVisitor& visitor)
    : fem_Material(model, fem_SubstanceConstant(cls_ReadVisitor(visitor, SUBSTANCE)),
                   visitor.Memento()->ReadDouble(DENSITY, 0.0), visitor.Memento()->ReadDouble(ELASTIC_MODULUS, 0.0),
                   visitor.GetUid())
{}

fem_Material::fem_Material(const omu_InterfaceObj& model, const fem_SubstanceConstant& substance, double density,
                           double elasticModulus, const cls_Uid& uid)
    : fem_Named(model, "materials", substance.GetString(), uid), m_substance(substance),
      m_density(CheckedDensity(density)), m_elasticModulus(CheckedModulus(elasticModulus))
{
    static constexpr memberTable members[] = {
        {"name", "-> vexomu.Constant: STEEL, ALUMINUM or TITANIUM.", omu_AsGetter<&fem_Material::GetSubstance>,
         nullptr},
        {"density", "-> float: In tonnes per cubic millimetre.", omu_AsGetter<&fem_Material::GetDensity>,
         omu_AsMethod<&fem_Material::SetDensity>},
        {"elasticModulus", "-> float: In MPa; 0.0 when it is not known.",
         omu_AsGetter<&fem_Material::GetElasticModulus>, omu_AsMethod<&fem_Material::SetElasticModulus>},
        {},
    };
    DescribeType("Material", nullptr, members);
}

void fem_Material::Register(cls_ClassRegistrar& registrar)
{
    for (const int version : {1, 2}) {
        cls_ClassMetadata& metadata = registrar.CreateClassMD("Material", CLASS_ID, version, nullptr, 1);
        metadata.AddAttribute(SUBSTANCE, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE)
            .AddAttribute(DENSITY, cls_ATTRIBUTE_REAL, 1, cls_COLLECTION_NONE);
        if (version >= 2) {
            metadata.AddAttribute(ELASTIC_MODULUS, cls_ATTRIBUTE_REAL, 1, cls_COLLECTION_NONE);
        }
    }
}

void fem_Material::DBWrite(const cls_WriteVisitor& visitor, fem_Save&) const
{
    if (visitor.StartWrite(CLASS_ID, Uid()) != 0) {
        m_substance.DBWrite(cls_WriteVisitor(visitor, SUBSTANCE, nullptr));
        visitor.Memento()->WriteDouble(DENSITY, m_density);
        visitor.Memento()->WriteDouble(ELASTIC_MODULUS, m_elasticModulus);
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

omu_Primitive* fem_Material::GetElasticModulus()
{
    return new omu_PrimNumber(m_elasticModulus);
}

omu_Primitive* fem_Material::SetElasticModulus(omu_Arguments& arguments)
{
    double modulus = 0.0;
    arguments.Begin();
    arguments.Get(modulus);
    arguments.End("elasticModulus");
    m_elasticModulus = CheckedModulus(modulus);
    return new omu_PrimNone;
}
