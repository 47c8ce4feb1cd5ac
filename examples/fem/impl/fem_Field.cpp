#include "fem_Field.h"

#include "fem_Save.h"

#include "cls_ClassRegistrar.h"
#include "cls_MementoWrite.h"
#include "cls_ReadVisitor.h"
#include "omu_Arguments.h"
#include "omu_PrimArray.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimTuple.h"
#include "omu_ValueErrorException.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <memory>

namespace
{

constexpr const char* SOURCE = "examples/fem/impl/fem_Field";

const cls_FieldHandle DESCRIPTION("description");
const cls_FieldHandle VALUES("values");

} // namespace

fem_Field::fem_Field(const omu_InterfaceObj& step, const cow_String& name, const cow_String& description)
    : fem_Named(step, "fields", name), m_description(description)
{
    Describe();
}

fem_Field::fem_Field(const omu_InterfaceObj& step, const cow_String& name, const cls_ReadVisitor& visitor)
    : fem_Named(step, "fields", name, visitor.GetUid()), m_description(visitor.Read(DESCRIPTION, "")),
      m_values(cls_ReadVisitor(visitor, VALUES))
{
    Describe();
}

void fem_Field::Describe()
{
    static constexpr methodTable methods[] = {
        {"append",
         "append(values: collections.abc.Sequence[float] | numpy.ndarray[Any, Any]) -> None: adds numbers at the end.",
         omu_AsMethod<&fem_Field::AppendValues>},
        {"extremes", "extremes() -> tuple[float, float]: the least and the greatest number.",
         omu_AsMethod<&fem_Field::Extremes>},
        {},
    };
    static constexpr memberTable members[] = {
        {"name", "-> str: Unique among the fields of the step.", omu_AsGetter<&fem_Field::GetName>, nullptr},
        {"description", "-> str: Free text.", omu_AsGetter<&fem_Field::GetDescription>,
         omu_AsMethod<&fem_Field::SetDescription>},
        {},
    };
    DescribeType("Field", methods, members);
    DoNotJournal("extremes"); // a journal holds what changes the model
}

void fem_Field::Register(cls_ClassRegistrar& registrar)
{
    registrar.CreateClassMD("Field", CLASS_ID, 1, nullptr, 1)
        .AddAttribute(DESCRIPTION, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE)
        .AddAttribute(VALUES, cls_ATTRIBUTE_REAL, 1,
                      cls_CollectionTypeFix(cls_COLLECTION_ARRAY, static_cast<double*>(nullptr)));
}

void fem_Field::DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const
{
    if (visitor.StartWrite(CLASS_ID, Uid()) != 0) {
        visitor.Memento()->WriteString(DESCRIPTION, m_description);
        save.Write(visitor, VALUES, m_values);
    }
}

omu_Primitive* fem_Field::Index(const int& index) const
{
    return new omu_PrimNumber(m_values.ConstGet(ConvertSubscrIndex(index)));
}

omu_Primitive* fem_Field::Slice(const int& low, const int& high) const
{
    const int from = ConvertIndex(low);
    const int count = std::max(ConvertIndex(high) - from, 0);
    cow_1DArray<double> values(count);
    double* const to = values.Write();
    for (int i = 0; i < count; ++i) {
        to[i] = m_values.ConstGet(from + i);
    }
    return new omu_PrimArray(1, &count, to);
}

omu_Primitive* fem_Field::GetDescription()
{
    return new omu_PrimString(m_description);
}

omu_Primitive* fem_Field::SetDescription(omu_Arguments& arguments)
{
    cow_String description;
    arguments.Begin();
    arguments.Get(description);
    arguments.End("description");
    m_description = description;
    return new omu_PrimNone;
}

omu_Primitive* fem_Field::AppendValues(omu_Arguments& arguments)
{
    omu_PrimArray array;
    cow_1DArray<double> sequence;
    arguments.Begin();
    arguments.Get(array, "values");
    if (arguments.Alternative()) {
        omu_Get(arguments, sequence, "values");
        array = omu_PrimArray(1, std::array{sequence.Length()}.data(), sequence.data());
    }
    arguments.End("append");
    if (array.ConstGetNumDimensions() != 1) {
        omu_ValueErrorException("values must have one dimension").Throw(SOURCE, __LINE__);
    }
    if (array.Length() > std::numeric_limits<int>::max() - m_values.Size()) {
        omu_ValueErrorException(Repr() + " would be longer than 2147483647 numbers").Throw(SOURCE, __LINE__);
    }
    if (m_values.IsReadOnly()) {
        const char* const why = " is in a file that takes no changes: save the session first, elsewhere if read-only";
        omu_ValueErrorException(Repr() + why).Throw(SOURCE, __LINE__);
    }
    const int length = m_values.Size();
    const auto* const first = static_cast<const std::byte*>(array.ConstGetData());
    try {
        for (std::ptrdiff_t i = 0; i < array.Length(); ++i) {
            m_values.Append(getDoubleAtPtr(first + i * array.ConstGetStride(0), array.ConstGetPrimNumberType()));
        }
    } catch (...) {
        m_values.SetLength(length); // all or nothing
        throw;
    }
    return new omu_PrimNone;
}

omu_Primitive* fem_Field::Extremes(omu_Arguments& arguments)
{
    arguments.Begin();
    arguments.End("extremes");
    if (m_values.Size() == 0) {
        omu_ValueErrorException(Repr() + " is empty").Throw(SOURCE, __LINE__);
    }
    double least = m_values.ConstGet(0);
    double greatest = least;
    for (int i = 1; i < m_values.Size(); ++i) {
        const double value = m_values.ConstGet(i);
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    }
    auto result = std::make_unique<omu_PrimTuple>(2);
    result->Put(least);
    result->Put(greatest);
    return result.release();
}
