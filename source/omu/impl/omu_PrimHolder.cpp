#include "omu_PrimHolder.h"

#include <typeinfo>

omu_PrimHolder omu_PrimHolder::CopyOf(const omu_Primitive& value)
{
    // Only objects of exactly these classes: one of a derived class would lose what it adds.
    const std::type_info& type = typeid(value);
    if (type == typeid(omu_PrimNumber)) {
        return omu_PrimHolder(std::in_place_type<omu_PrimNumber>, static_cast<const omu_PrimNumber&>(value));
    }
    if (type == typeid(omu_PrimString)) {
        return omu_PrimHolder(std::in_place_type<omu_PrimString>, static_cast<const omu_PrimString&>(value));
    }
    return omu_PrimHolder(value.Copy());
}

omu_Primitive* omu_PrimHolder::Release()
{
    if (IsNull()) {
        return nullptr;
    }
    omu_Primitive* value = Shared();
    if (!IsInPlace() && value->CowIsUnique()) {
        value->CowLower();
    } else {
        value = ConstGet()->Copy();
        Drop();
    }
    SetShared(nullptr);
    return value;
}

bio_Ifilter& operator>>(bio_Ifilter& in, omu_PrimHolder& item)
{
    const std::uint64_t start = in.Offset();
    std::uint32_t typeId = 0;
    in >> typeId;
    const auto readInPlace = [&]<omu_HeldInPlace V>(std::in_place_type_t<V> type) {
        const bio_Ifilter::Nested nested(in);
        omu_PrimHolder value(type, in);
        V::ReadData(in, value.InPlace());
        item = std::move(value);
    };
    if (typeId == omu_PrimNumber::TypeId()) {
        readInPlace(std::in_place_type<omu_PrimNumber>);
    } else if (typeId == omu_PrimString::TypeId()) {
        readInPlace(std::in_place_type<omu_PrimString>);
    } else if (typeId == 0) {
        item = omu_PrimHolder();
    } else {
        item =
            omu_PrimHolder(static_cast<omu_Primitive*>(obj_InputAnnounced(in, typeId, omu_Primitive::TypeId(), start)));
    }
    return in;
}
