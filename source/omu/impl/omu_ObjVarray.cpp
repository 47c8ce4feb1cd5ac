#include "omu_ObjVarray.h"

template class omu_ObjVarray<omu_Varray<unsigned int>>;
