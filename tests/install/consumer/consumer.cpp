// Stands for a user's program: public headers only, one call into each kind of library.
#include "cow_String.h"

#include <iostream>

int main() { std::cout << cow_String("installed").AsCharPtr() << '\n'; }
