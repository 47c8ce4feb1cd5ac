#include "rgx_Module.h"

namespace
{

int users = 0;

} // namespace

void rgx_initialize(int& count)
{
    if (users++ == 0) {
        ++count;
    }
}

void rgx_finalize(int& count)
{
    if (users != 0 && --users == 0) {
        --count;
    }
}
