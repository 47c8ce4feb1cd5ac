#pragma once

#include "py_ref.h"

#include <vector>

/// The slots through which Python's + - * / unary minus, abs, truth, int and float reach a kernel object's
/// operations. An operand that is no kernel object is made one by the other operand's Coerce, int and float ask Cast
/// with their name; what an object does not offer raises the kernel's own error.
std::vector<PyType_Slot> pyOperatorSlots();
