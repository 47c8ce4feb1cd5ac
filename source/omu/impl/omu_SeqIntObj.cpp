#include "omu_SeqIntObj.h"

#include "omu_IndexError_detail.h"
#include "omu_PrimVisitor.h"
#include "omu_TextLimits_detail.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unordered_set>

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_SeqIntObj";

} // namespace

omu_SeqIntObj::omu_SeqIntObj() : omu_SeqIntObj(omu_NO_OPERATION_RULES) {}

omu_SeqIntObj::omu_SeqIntObj(omu_OperationRules rules) : omu_InterfaceObj(rules, omu_NO_PYTHON_TYPE)
{
    DescribeType("Sequence", nullptr, nullptr);
}

cow_String omu_SeqIntObj::AsString(int depth) const
{
    if (omu_IsCutOff(depth)) {
        return omu_InterfaceObj::AsString(depth);
    }
    std::string text("[");
    bool isOffered = true;
    omu_AppendElements(text, std::max(Length(), 0), [&](int i) {
        const std::unique_ptr<omu_Primitive> element(Index(i));
        isOffered = isOffered && element != nullptr;
        omu_AppendElement(text, element.get(), depth + 1);
    });
    text += ']';
    return isOffered ? cow_String(std::string_view(text)) : omu_InterfaceObj::AsString(depth);
}

cow_String omu_SeqIntObj::Repr() const
{
    return omu_InterfaceObj::AsString(0);
}

cow_String omu_SeqIntObj::FullRepr() const
{
    return AsString(0);
}

void omu_SeqIntObj::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitSequenceObj(*this);
}

int omu_SeqIntObj::ConvertIndex(const int& index) const
{
    const int length = Length();
    const int position = index >= 0 ? index : static_cast<int>(std::max<std::int64_t>(std::int64_t{index} + length, 0));
    if (position > length) {
        omu_ThrowIndexError(index, SOURCE, __LINE__);
    }
    return position;
}

int omu_SeqIntObj::ConvertSubscrIndex(const int& index) const
{
    const int position = ConvertIndex(index);
    if (position == Length()) {
        omu_ThrowIndexError(index, SOURCE, __LINE__);
    }
    return position;
}

std::span<const int> omu_SeqIntObj::Ids() const noexcept
{
    return {m_ids.data(), static_cast<std::size_t>(std::clamp(m_length, 0, m_ids.Length()))};
}

int omu_SeqIntObj::IsUnique(const int& id) const
{
    const std::span<const int> ids = Ids();
    return std::find(ids.begin(), ids.end(), id) == ids.end() ? 1 : 0;
}

void omu_SeqIntObj::RemoveDuplicates()
{
    if (m_length < 1) {
        return;
    }
    const std::span<const int> ids = Ids();
    std::unordered_set<int> seen;
    seen.reserve(ids.size());
    cow_1DArray<int> kept;
    kept.Reserve((m_length / 16 + 1) * 16);
    for (const int id : ids) {
        if (seen.insert(id).second) {
            kept.Append(id);
        }
    }
    m_ids = std::move(kept);
    m_length = m_ids.Length();
}
