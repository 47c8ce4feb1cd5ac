#include "fem_Set.h"

#include "fem_Element.h"
#include "fem_Model.h"

#include "cls_ClassRegistrar.h"
#include "cls_CollectionReaders.h"
#include "cls_CollectionWriters.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "omu_Arguments.h"
#include "omu_KeyErrorException.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"

#include <algorithm>
#include <memory>

namespace
{

/// The element of the record that has the runs: arrays of a part's id and labels of its elements.
constexpr std::uint32_t RUNS = 2;

} // namespace

fem_Set::fem_Set(const fem_Model& model, const cow_String& name) : fem_Named(model, "sets", name), m_model(model)
{
    Describe();
}

fem_Set::fem_Set(const fem_Model& model, const cow_String& name, const cls_ReadVisitor& visitor)
    : fem_Named(model, "sets", name, visitor.GetUid()), m_model(model)
{
    Describe();
    const std::unique_ptr<cls_ReadListPrim<int>> runs(visitor.Memento()->MakeIntListReader(RUNS));
    while (runs != nullptr && runs->Next()) {
        const cow_1DArray<int> run = runs->Array();
        const fem_Part* const part = run.IsEmpty() ? nullptr : model.FindPart(run[0]);
        if (part == nullptr) {
            fem_FailStored(visitor, "it has elements of a part that is not there");
        }
        cow_List<int> labels;
        for (int i = 1; i < run.Length(); ++i) {
            if (!part->Elements().HasKey(run[i])) {
                fem_FailStored(visitor, part->Repr() + " has no element " + cow_String(run[i]));
            }
            labels.Append(run[i]);
        }
        Add(*part, labels);
    }
}

void fem_Set::Register(cls_ClassRegistrar& registrar)
{
    registrar.CreateClassMD("Set", CLASS_ID, 1, nullptr, 1); // its runs are an element
}

void fem_Set::DBWrite(const cls_WriteVisitor& visitor, fem_Save&) const
{
    if (visitor.StartWrite(CLASS_ID, Uid()) == 0) {
        return;
    }
    const std::unique_ptr<cls_WriteListPrim<int>> runs(visitor.Memento()->MakeIntListWriter(RUNS));
    for (const omu_IntAndArrayInt& run : m_subscripts.ConstRuns()) {
        cow_1DArray<int> written(run.Length() + 1);
        int* const to = written.Write();
        to[0] = run.InstanceId();
        std::copy_n(run.ConstIds().begin(), run.Length(), to + 1);
        runs->AppendArray(written);
    }
}

void fem_Set::Describe()
{
    static constexpr methodTable methods[] = {
        {"add", "add(part: Part, labels: int | collections.abc.Sequence[int]) -> None: appends elements of a part.",
         omu_AsMethod<&fem_Set::AddElements>},
        {"compress", "compress() -> None: sorts the elements by part and label, and leaves each once.",
         omu_AsMethod<&fem_Set::Compress>},
        {},
    };
    static constexpr memberTable members[] = {
        {"name", "-> str: Unique among the sets of the model.", omu_AsGetter<&fem_Set::GetName>, nullptr},
        {"parts", "-> tuple[str, ...]: The parts that have elements in it, each once.",
         omu_AsGetter<&fem_Set::GetParts>, nullptr},
        {},
    };
    DescribeType("Set", methods, members);
}

omu_Primitive* fem_Set::Index(const int& index) const
{
    int label = 0;
    int partId = 0;
    ConvertSubscrIndex(index, label, partId);
    return new fem_Element(m_model.PartOfId(partId), label);
}

omu_Primitive* fem_Set::Slice(const int& low, const int& high) const
{
    const int from = ConvertIndex(low, /*allowEnd=*/true);
    const int to = ConvertIndex(high, /*allowEnd=*/true);
    auto elements = std::make_unique<omu_PrimList>(std::max(to - from, 0));
    for (int i = from; i < to; ++i) {
        elements->Put(Index(i));
    }
    return elements.release();
}

void fem_Set::Add(const fem_Part& part, const cow_List<int>& labels)
{
    omu_IntAndArrayInt run(part.Id(), {});
    for (const int label : labels) {
        if (!part.Elements().HasKey(label)) {
            const cow_String key(label);
            omu_KeyErrorException(part.Repr() + " has no element " + key, key)
                .Throw("examples/fem/impl/fem_Set", __LINE__);
        }
        run.GetIds().Append(label);
    }
    m_subscripts.AppendOrMerge(run);
}

void fem_Set::RemovePart(int partId)
{
    omu_ListArrayInt kept;
    for (const omu_IntAndArrayInt& run : m_subscripts.ConstRuns()) {
        if (run.InstanceId() != partId) {
            kept.AppendOrMerge(run);
        }
    }
    m_subscripts = kept;
}

omu_Primitive* fem_Set::GetParts()
{
    cow_List<int> partIds;
    m_subscripts.GetKeys(partIds);
    auto names = std::make_unique<omu_PrimTuple>(partIds.Length());
    for (const int partId : partIds) {
        names->Put(m_model.PartOfId(partId).Name());
    }
    return names.release();
}

omu_Primitive* fem_Set::AddElements(omu_Arguments& arguments)
{
    cow_List<int> labels;
    int label = 0;
    arguments.Begin();
    const omu_InterfaceObj* const part = arguments.Get("Part", "part", nullptr);
    arguments.Get(labels, "labels");
    // Without a part it would undo that failure, the first of the call.
    if (part != nullptr && arguments.Alternative()) {
        arguments.Get(label, "labels");
        labels = {label};
    }
    arguments.End("add");
    Add(m_model.OwnPart(part->Resolve()), labels);
    return new omu_PrimNone;
}

omu_Primitive* fem_Set::Compress(omu_Arguments& arguments)
{
    arguments.Begin();
    arguments.End("compress");
    RemoveDuplicates();
    return new omu_PrimNone;
}
