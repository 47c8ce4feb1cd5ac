// Stands for a user's program: values are made and shown, and an error of the library is caught by its type.
#include "nex_Exception.h"
#include "omu_Module.h"
#include "omu_PrimTuple.h"

#include <iostream>

int main()
{
    int count = 0;
    omu_initialize(count);
    omu_PrimTuple tuple(2);
    tuple.Put(1);
    tuple.Put(cow_String("a"));
    std::cout << tuple.AsString(0).AsCharPtr() << '\n';
    try {
        cow_String text;
        int number = 0;
        tuple.Begin();
        tuple.Get(text);
        tuple.Get(number);
        tuple.End("consumer");
    } catch (const nex_Exception& error) {
        std::cout << error.what() << '\n';
    }
    omu_finalize(count);
}
