#include "LayoutList.h"
#include "omu_PrimEnum.h"
#include "uti_Coord3D.h"
#include "uti_CoordCont3D.h"

TEST(Layouts, Change_with_the_version_of_their_class_only)
{
    cls_ClassRegistrar registrar;
    omu_PrimEnum<bool, 1>::InitializeMetadata(registrar);
    uti_Coord3D::InitializeMetadata(registrar);
    uti_CoordCont3D::InitializeMetadata(registrar);
    ExpectLayouts(registrar, VEXOMU_TEST_DATA "/layouts.txt");
}
