#pragma once

#include "omi_Singleton.h"
#include "omu_InterfaceObj.h"
#include "omu_TextRepr.h"
#include "omu_Text_detail.h"

#include <algorithm>
#include <cstdint>
#include <string>

// What the text settings do to the texts of kernel objects and repositories.

/// Whether an object at this nesting depth is shown by the text that stands for it.
inline bool omu_IsCutOff(int depth)
{
    // Objects may refer to each other in circles, so there is an end whatever the setting.
    return depth >= std::min(omi_Singleton<omu_TextRepr>::Instance().GetMaxRecursion(), omu_Primitive::MAX_NESTING);
}

/// Appends the text of an element at this depth (null: None); what stands for it where a kernel object is cut off.
inline void omu_AppendElement(std::string& text, const omu_Primitive* element, int depth)
{
    if (element == nullptr) {
        text += "None";
    } else if (element->IsType('<') && omu_IsCutOff(depth)) {
        text += omi_Singleton<omu_TextRepr>::Instance().GetMaxRecursionString(
            static_cast<const omu_InterfaceObj*>(element));
    } else {
        omu_AppendText(text, *element, depth);
    }
}

/// `append(i)` for each of `count` elements, with ", " between them; "..." stands for those that the limits on elements
/// and size leave out.
template <class AppendElement> void omu_AppendElements(std::string& text, int count, AppendElement append)
{
    const omu_TextRepr& settings = omi_Singleton<omu_TextRepr>::Instance();
    const std::int64_t mostBytes = std::int64_t{settings.GetMaxReprStringSizeMB()} * 1024 * 1024;
    const auto isTooLong = [&] { return static_cast<std::int64_t>(text.size()) > mostBytes; };
    for (int i = 0; i < count; ++i) {
        text += i > 0 ? ", " : "";
        const std::size_t start = text.size();
        const bool isShown = i < settings.GetMaxElementsInSequence() && !isTooLong();
        if (isShown) {
            append(i);
        }
        if (!isShown || isTooLong()) {
            text.resize(start);
            text += "...";
            return;
        }
    }
}
