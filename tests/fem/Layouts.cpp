#include "LayoutList.h"
#include "fem_Stored.h"

TEST(ExampleLayouts, Change_with_the_version_of_their_class_only)
{
    cls_ClassRegistrar registrar;
    fem_RegisterClasses(registrar);
    ExpectLayouts(registrar, VEXOMU_TEST_DATA "/layouts.txt");
}
