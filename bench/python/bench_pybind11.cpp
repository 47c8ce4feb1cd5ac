#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <string>
#include <vector>

namespace py = pybind11;

namespace
{

struct Peer
{
    void Other() {}
    double Measure(int count, double width, const std::string& name, const std::vector<int>& labels, bool flag)
    {
        int sum = count + static_cast<int>(name.size()) + (flag ? 1 : 0);
        for (const int label : labels) {
            sum += label;
        }
        return width + sum;
    }
};

} // namespace

PYBIND11_MODULE(bench_pybind11, module)
{
    py::class_<Peer> type(module, "Peer");
    type.def(py::init<>());
    for (const char* name : {"area", "copy", "delete", "describe", "edges", "faces", "hide", "nodes", "rename", "show",
                             "assign", "bound", "elements", "loads", "merge", "mirror", "rotate", "split", "volume"}) {
        type.def(name, &Peer::Other);
    }
    type.def("measure", &Peer::Measure, py::arg("count"), py::arg("width"), py::arg("name"),
             py::arg("labels") = std::vector<int>(), py::arg("flag") = false);
    module.attr("peer") = Peer();
}
