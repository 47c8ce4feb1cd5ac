#include "rgx_ReIterator.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <utility>

rgx_ReIterator::rgx_ReIterator(const cow_String& subject, int* offsets, int count)
    : m_subject(subject), m_isMatched(true)
{
    const std::unique_ptr<int[]> owned(offsets);
    if (offsets != nullptr) {
        m_offsets = cow_1DArrayList<int, int>(offsets, offsets + 2 * std::max(count, 0));
    }
}

rgx_ReIterator::rgx_ReIterator(const cow_String& subject, cow_1DArrayList<int, int> offsets) noexcept
    : m_subject(subject), m_offsets(std::move(offsets)), m_isMatched(true)
{}

bool rgx_ReIterator::Next() noexcept
{
    const bool hasNext = HasPair(m_index / 2 + 1);
    m_index += hasNext ? 2 : 0;
    return hasNext;
}

cow_String rgx_ReIterator::String() const
{
    return NthString(m_index / 2);
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
