#pragma once

#include "cow_String.h"

#include <string_view>

/// `text` with its first "%s" replaced by `subject`.
inline cow_String omu_Substitute(cow_String text, std::string_view subject)
{
    text.ReplaceFirst("%s", subject);
    return text;
}

/// `text` with its first "%1$s" replaced by `first` and its first "%2$s" by `second`.
inline cow_String omu_Substitute(cow_String text, std::string_view first, std::string_view second)
{
    // The later one first: what is put in is then not searched, whatever it holds and however the text is translated.
    if (text.Find("%2$s") > text.Find("%1$s")) {
        text.ReplaceFirst("%2$s", second);
        text.ReplaceFirst("%1$s", first);
    } else {
        text.ReplaceFirst("%1$s", first);
        text.ReplaceFirst("%2$s", second);
    }
    return text;
}
