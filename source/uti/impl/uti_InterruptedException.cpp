#include "uti_InterruptedException.h"

template <>
const uti_LabelEntry uti_LabelMap<uti_InterruptedExceptionEnm>::ENTRIES[] = {
    {uti_Signal, "uti_Signal", "interrupted by a signal"},
    {uti_Keyboard, "uti_Keyboard", "interrupted from the keyboard"},
    {uti_Stop, "uti_Stop", "stopped"},
    {0, nullptr, nullptr},
};

cow_String uti_InterruptedException::AsString() const
{
    return uti_LabelMap<uti_InterruptedExceptionEnm>::ResourceName(m_reason);
}
