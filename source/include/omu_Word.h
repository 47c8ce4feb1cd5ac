#pragma once

#include <concepts>

/// What tables and varrays hold: one word.
template <class T>
concept omu_Word = std::same_as<T, unsigned int> || std::same_as<T, void*>;
