#pragma once

#include <cstdint>

class cow_String;

/// The type of a persistent attribute's values; further codes belong to the storage side.
enum cls_AttributeType : std::uint32_t
{
    cls_ATTRIBUTE_INT = 5,
    cls_ATTRIBUTE_STRING = 11,
    cls_ATTRIBUTE_REAL = 15
};

/// How a persistent attribute holds many values. Each family of collections has a decade from 50 to 100: its generic
/// code ends in 0, and the unit digit tells the elements: 1 bool, 2 double, 3 float, 4 int, 5 string, 6 unsigned.
enum cls_CollectionType : std::uint32_t
{
    cls_COLLECTION_NONE = 0,
    cls_COLLECTION_STRING_KEYED = 2,
    cls_COLLECTION_INT_KEYED = 3,
    cls_COLLECTION_KEYED = 5, ///< generic: resolves to one of the two above
    cls_COLLECTION_ARRAY = 50,
    cls_COLLECTION_2D_ARRAY = 80
};

namespace cls_detail
{
constexpr cls_CollectionType FixCollectionType(cls_CollectionType generic, std::uint32_t unitDigit,
                                               cls_CollectionType keyed = cls_COLLECTION_KEYED) noexcept
{
    if (generic == cls_COLLECTION_KEYED) {
        return keyed;
    }
    const bool isFamily = generic >= 50 && generic <= 100 && generic % 10 == 0;
    return isFamily ? static_cast<cls_CollectionType>(generic + unitDigit) : generic;
}
} // namespace cls_detail

/// Turns a generic collection code into that of the element type, which the pointer alone selects. Codes that are not
/// generic come back unchanged.
constexpr cls_CollectionType cls_CollectionTypeFix(cls_CollectionType generic, bool*) noexcept
{
    return cls_detail::FixCollectionType(generic, 1);
}
constexpr cls_CollectionType cls_CollectionTypeFix(cls_CollectionType generic, double*) noexcept
{
    return cls_detail::FixCollectionType(generic, 2);
}
constexpr cls_CollectionType cls_CollectionTypeFix(cls_CollectionType generic, float*) noexcept
{
    return cls_detail::FixCollectionType(generic, 3);
}
constexpr cls_CollectionType cls_CollectionTypeFix(cls_CollectionType generic, int*) noexcept
{
    return cls_detail::FixCollectionType(generic, 4, cls_COLLECTION_INT_KEYED);
}
constexpr cls_CollectionType cls_CollectionTypeFix(cls_CollectionType generic, cow_String*) noexcept
{
    return cls_detail::FixCollectionType(generic, 5, cls_COLLECTION_STRING_KEYED);
}
constexpr cls_CollectionType cls_CollectionTypeFix(cls_CollectionType generic, unsigned int*) noexcept
{
    return cls_detail::FixCollectionType(generic, 6);
}
