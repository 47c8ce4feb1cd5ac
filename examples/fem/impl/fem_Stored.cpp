#include "fem_Stored.h"

#include "fem_Session.h"

#include "cls_ClassRegistrar.h"
#include "cls_ReadVisitor.h"
#include "nex_TextException.h"

void fem_RegisterClasses(cls_ClassRegistrar& registrar)
{
    // Its objects are its entries, by name.
    registrar.CreateClassMD("Repository", fem_REPOSITORY, 1, nullptr, 1);
    fem_SubstanceConstant::InitializeMetadata(registrar); // for all constants, whatever their enumeration
    fem_Session::Register(registrar);
    fem_Model::Register(registrar);
    fem_Part::Register(registrar);
    fem_Mesh::Register(registrar);
    fem_Material::Register(registrar);
    fem_Set::Register(registrar);
    fem_Step::Register(registrar);
    fem_Field::Register(registrar);
}

void fem_FailStored(const cls_ReadVisitor& visitor, const cow_String& what)
{
    nex_TextException(visitor.DbId() + ": " + what).Throw("examples/fem/impl/fem_Stored", __LINE__);
}
