// The Python module "quillbank": the library's public API in Python's manners.

#include <pybind11/pybind11.h>

#include "python/python_support.hpp"

PYBIND11_MODULE(quillbank, module) {
    using namespace quillbank::python;
    module.doc() =
        "Quillbank: the document model of an authored lesson (lesson, typed property bags, storyboards with "
        "their child elements, navigation maps), stored as XML that Windows host applications read, and as "
        "a lossless JSON form.";
    BindErrors(module);
    BindEnums(module);
    BindRecords(module);
    BindXml(module);
    BindFunctions(module);
    BindProperties(module);
    BindElements(module);
    BindStoryboards(module);
    BindTree(module);
    BindMaps(module);
    BindLesson(module);
}
