#include "omu_Atom.h"

#include "VEXCRT.h"

#include <deque>
#include <mutex>
#include <string_view>
#include <unordered_map>

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_Atom";

class AtomTable
{
public:
    bool Add(std::string_view text)
    {
        const std::lock_guard guard(m_mutex);
        if (m_indices.contains(text)) {
            return false;
        }
        m_texts.emplace_back(text);
        m_indices.emplace(m_texts.back().view(), static_cast<unsigned int>(m_texts.size() - 1));
        return true;
    }

    unsigned int Find(std::string_view text)
    {
        const std::lock_guard guard(m_mutex);
        const auto found = m_indices.find(text);
        return found != m_indices.end() ? found->second : 0;
    }

    cow_String Text(unsigned int index)
    {
        const std::lock_guard guard(m_mutex);
        return m_texts[index];
    }

    unsigned int Length()
    {
        const std::lock_guard guard(m_mutex);
        return static_cast<unsigned int>(m_texts.size());
    }

private:
    std::mutex m_mutex;
    // The first slot stands for no text. The keys refer to the texts, which a deque never moves: so a short text, which
    // lies within its string, stays where it is.
    std::deque<cow_String> m_texts{cow_String()};
    std::unordered_map<std::string_view, unsigned int> m_indices;
};

AtomTable& Atoms()
{
    // Never deleted: objects with static lifetime may hold atoms.
    static auto* const atoms = new AtomTable;
    return *atoms;
}

bool IsText(const char* text)
{
    if (text == nullptr) {
        VEXCRT::_assert("omu_Atom: string must be non-NULL!", SOURCE, __LINE__);
    }
    return text != nullptr;
}

} // namespace

bool omu_Atom::CreateAtom(const char* text)
{
    return IsText(text) && Atoms().Add(text);
}

omu_Atom::omu_Atom(const char* text) : m_index(IsText(text) ? Atoms().Find(text) : 0) {}

omu_Atom::omu_Atom(unsigned int index)
{
    if (index >= Atoms().Length()) {
        VEXCRT::_assert("i< list.Length()", SOURCE, __LINE__);
    } else if (index == 0) {
        VEXCRT::_assert("found", SOURCE, __LINE__);
    } else {
        m_index = index;
    }
}

cow_String omu_Atom::String() const
{
    return Atoms().Text(m_index);
}
