#include "rgx_ReIterator.h"

#include "rgx_pcre_detail.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>

rgx_ReIterator::rgx_ReIterator(const cow_String& subject, int* offsets, int count)
    : m_subject(subject), m_isMatched(true)
{
    const std::unique_ptr<int[]> owned(offsets);
    if (offsets != nullptr && count > 0) {
        std::copy_n(offsets, 2 * count, Reset(count));
    }
}

rgx_ReIterator::rgx_ReIterator(const cow_String& subject, const std::size_t* offsets, int count)
    : m_subject(subject), m_isMatched(true)
{
    rgx_detail::CopyOffsets(offsets, count, Reset(count));
}

int* rgx_ReIterator::Reset(int pairs)
{
    m_pairs = pairs;
    if (pairs <= NEAR_PAIRS) {
        return m_near.data();
    }
    m_far.Resize(2 * pairs);
    return m_far.Write();
}

// Defined for users of the DLL who bind references to them.
constexpr int rgx_ReIterator::BEFORE;
constexpr int rgx_ReIterator::AFTER;

bool rgx_ReIterator::Next() noexcept
{
    const bool hasNext = HasPair(m_current + 1);
    m_current += hasNext ? 1 : 0;
    return hasNext;
}

cow_String rgx_ReIterator::String() const
{
    return NthString(m_current);
}

int rgx_ReIterator::StringAsGroupNum() const
{
    const cow_String text = String();
    if (text == "'") {
        return AFTER;
    }
    if (text == "`") {
        return BEFORE;
    }
    // As atoi reads it, "&" and the empty text being no number; but too many digits are not undefined.
    const long number = std::strtol(text.AsCharPtr(), nullptr, 10);
    return static_cast<int>(std::clamp<long>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

cow_String rgx_ReIterator::NthString(int n) const
{
    switch (n) {
    case BEFORE:
        return m_subject.Substring(0, Start(0));
    case AFTER:
        return HasPair(0) ? m_subject.Substring(End(0), m_subject.Length()) : cow_String();
    default:
        return m_subject.Substring(Start(n), End(n));
    }
}
