#include "omu_SeqIntObj.h"

#include "omu_IndexError_detail.h"
#include "omu_PrimVisitor.h"
#include "omu_TextLimits_detail.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unordered_set>
#include <vector>

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_SeqIntObj";

/// The ids for which `isNew` says so.
template <class IsNew> cow_1DArray<int> Kept(std::span<const int> ids, IsNew isNew)
{
    cow_1DArray<int> kept;
    kept.Reserve(static_cast<int>((ids.size() / 16 + 1) * 16));
    for (const int id : ids) {
        if (isNew(id)) {
            kept.Append(id);
        }
    }
    return kept;
}

/// Each id once, where it comes first. Ids that lie close, as labels do, are told by a bit each.
cow_1DArray<int> FirstOfEach(std::span<const int> ids)
{
    if (ids.empty()) {
        return {};
    }
    constexpr std::uint32_t WORD_BITS = 64;
    const auto [least, largest] = std::minmax_element(ids.begin(), ids.end());
    const auto first = static_cast<std::uint32_t>(*least);
    const std::size_t words = (static_cast<std::uint32_t>(*largest) - first) / WORD_BITS + std::size_t{1};
    if (words <= ids.size()) {
        std::vector<std::uint64_t> bits(words);
        return Kept(ids, [&](int id) {
            const std::uint32_t offset = static_cast<std::uint32_t>(id) - first;
            std::uint64_t& word = bits[offset / WORD_BITS];
            const std::uint64_t before = word;
            word |= std::uint64_t{1} << offset % WORD_BITS;
            return word != before;
        });
    }
    std::unordered_set<int> seen;
    seen.reserve(ids.size());
    return Kept(ids, [&](int id) { return seen.insert(id).second; });
}

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
    m_ids = FirstOfEach(Ids());
    m_length = m_ids.Length();
}
