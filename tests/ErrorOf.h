#pragma once

#include <exception>
#include <string>

/// The text of the E that `call` ends with, or empty; anything else that is thrown fails the test.
template <class E = std::exception, class Call> std::string ErrorOf(Call call)
{
    try {
        call();
    } catch (const E& error) {
        return error.what();
    }
    return "";
}
