#pragma once

// Tree nodes and node collections given from Python: the library's own, or
// adapters over any Python objects with the members the bridge calls.

#include <memory>

#include <pybind11/pybind11.h>

#include <quillbank/tree_view.hpp>

namespace quillbank::python {

namespace py = pybind11;

std::shared_ptr<TreeNode> NodeFromPython(const py::object& node);
py::object NodeToPython(const std::shared_ptr<TreeNode>& node);
std::shared_ptr<TreeNodes> NodesFromPython(const py::object& nodes);

}  // namespace quillbank::python
