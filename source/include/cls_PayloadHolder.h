#pragma once

template <class T> struct cow_Direct;
template <class T, class Cloner> class cow_COW;

/// The copy-on-write holder of a stored object's payload, as the storage interfaces pass it around without knowing the
/// payload's type: always by pointer, and cast back by the class it belongs to.
using cls_PayloadHolder = cow_COW<int, cow_Direct<int>>;
