#include "cpython_peer.h"

namespace
{

PyModuleDef definition = {
    PyModuleDef_HEAD_INIT, "bench_cpython", "The hand-written peer.", -1, nullptr, nullptr, nullptr, nullptr, nullptr};

} // namespace

PyMODINIT_FUNC PyInit_bench_cpython()
{
    PyObject* const module = PyModule_Create(&definition);
    PyObject* const peer = module != nullptr ? cpython_peer::NewPeer() : nullptr;
    if (peer == nullptr || PyModule_AddObject(module, "peer", peer) < 0) {
        return nullptr;
    }
    return module;
}
