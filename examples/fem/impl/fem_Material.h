#pragma once

#include "fem_Constants.h"
#include "fem_Named.h"

/// What parts are made of. Its name is that of a constant, under which it lies in its model.
class fem_Material final : public fem_Named<omu_InterfaceObj>
{
public:
    static constexpr std::uint32_t CLASS_ID = fem_MATERIAL;

    /// Throws omu_RangeErrorException unless the density is above 0, and the elastic modulus 0 or above.
    fem_Material(const omu_InterfaceObj& model, const fem_SubstanceConstant& substance, double density,
                 double elasticModulus, const cls_Uid& uid = cls_Uid::AllocateUid());
    fem_Material(const omu_InterfaceObj& model, const cls_ReadVisitor& visitor);

    static void Register(cls_ClassRegistrar& registrar);
    void DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const;

    const fem_SubstanceConstant& Substance() const noexcept { return m_substance; }
    /// In tonnes per cubic millimetre, which goes with forces in N and lengths in mm.
    double Density() const noexcept { return m_density; }

private:
    omu_Primitive* GetSubstance() { return m_substance.Copy(); }
    omu_Primitive* GetDensity();
    omu_Primitive* SetDensity(omu_Arguments& arguments);
    omu_Primitive* GetElasticModulus();
    omu_Primitive* SetElasticModulus(omu_Arguments& arguments);

    fem_SubstanceConstant m_substance;
    double m_density;
    double m_elasticModulus; // in MPa; 0: not known
};
