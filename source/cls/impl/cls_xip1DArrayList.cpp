#include "cls_xip1DArrayList.h"

#include "cls_Module.h"
#include "obj_Stream.h"

#include <new>

namespace
{
using FloatList = cls_xp1DArrayList<float>;
using Arrays = cow_List<cow_1DArray<float>>;

constexpr std::uint32_t TYPE_ID = cls_TypeIdOf(cls_XIP_1D_ARRAY_LIST_ROW);

Arrays ReadArrays(bio_Ifilter& in)
{
    Arrays arrays;
    in >> arrays;
    return arrays;
}
} // namespace

template <std::same_as<float> T> std::uint32_t cls_xip1DArrayList<T>::TypeId()
{
    return TYPE_ID;
}

template <std::same_as<float> T> void* cls_xip1DArrayList<T>::CtorFunc(bio_Ifilter& in, void* place)
{
    const Arrays arrays = ReadArrays(in);
    return place != nullptr ? ::new (place) FloatList(arrays) : new FloatList(arrays);
}

template <std::same_as<float> T> void cls_xip1DArrayList<T>::DtorFunc(void* object)
{
    obj_Destroy<FloatList>(object);
}

template <std::same_as<float> T> void cls_xip1DArrayList<T>::ReadData(bio_Ifilter& in, void* object)
{
    static_cast<FloatList*>(object)->SetArrays(ReadArrays(in));
}

template <std::same_as<float> T> void cls_xip1DArrayList<T>::WriteData(bio_Ofilter& out, const void* object)
{
    out << static_cast<const FloatList*>(object)->Arrays();
}

template <std::same_as<float> T> void cls_xip1DArrayList<T>::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("cls_xip1DArrayList");
    out << static_cast<const FloatList*>(object)->Arrays();
    out.Close();
}

template class cls_xip1DArrayList<float>;

bio_Ifilter& operator>>(bio_Ifilter& in, cls_xp1DArrayList<float>*& list)
{
    void* object = nullptr;
    obj_InputP0Ptr(in, object, TYPE_ID);
    list = static_cast<FloatList*>(object);
    return in;
}

bio_Ifilter& operator>>(bio_Ifilter& in, cls_xp1DArrayList<float>& list)
{
    obj_InputP0Obj(in, &list, TYPE_ID);
    return in;
}

bio_Ofilter& operator<<(bio_Ofilter& out, const cls_xp1DArrayList<float>* list)
{
    obj_OutputP0Ptr(out, list, TYPE_ID);
    return out;
}

bio_Ofilter& operator<<(bio_Ofilter& out, const cls_xp1DArrayList<float>& list)
{
    obj_OutputP0Obj(out, &list, TYPE_ID);
    return out;
}

pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const cls_xp1DArrayList<float>* list)
{
    obj_PrintP0Ptr(out, list, TYPE_ID);
    return out;
}

pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const cls_xp1DArrayList<float>& list)
{
    obj_PrintP0Obj(out, &list, TYPE_ID);
    return out;
}
