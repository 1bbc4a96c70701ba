// quillbank.Error and its subclasses, and the translation of the library's
// quillbank::Error into them.

#include <pybind11/eval.h>
#include <pybind11/pybind11.h>

#include "python/python_support.hpp"

namespace quillbank::python {

namespace {

// The classes are plain Python classes, so that they behave as every other
// exception does (pickling, __str__, subclassing).
constexpr const char* kErrorClasses = R"PY(
class Error(Exception):
    """The one error the library raises: number, source and description.

    number is the error number (a negative number for the component's own
    errors, as 0x800403E9 is -2147220503), source the member that raised it
    ("Class.Member" or "Class.Member (Set)"), description the text.
    A subclass stands for each documented number.
    """

    def __init__(self, number, source, description):
        super().__init__(number, source, description)
        self.number = number
        self.source = source
        self.description = description

    def __str__(self):
        return self.description


class InvalidCallError(Error):
    """Error 5: the call is not valid in the object's state or for this argument."""


class CounterOverflowError(Error, OverflowError):
    """Error 6: a counter overflowed."""


class TypeMismatchError(Error, TypeError):
    """Error 13: a value has the wrong type for the request."""


class OutOfStackSpaceError(Error, RecursionError):
    """Error 28: runaway recursion, as a bag or list that contains itself."""


class NullArgumentError(Error, ValueError):
    """Error 94: a required object argument is None ("Invalid use of Null")."""


class InvalidArgumentError(Error, ValueError):
    """Error 380: an argument value is not allowed."""


class FormError(Error, ValueError):
    """Error 0x800403E9 (-2147220503): XML or JSON text of the wrong form."""


class DomError(Error):
    """Error 0x80004005 (-2147467259): the XML document model failed."""


class TreeError(Error, LookupError):
    """Errors 35601 ("Element not found") and 35602 ("Key is not unique in collection") of a tree."""


ERROR_CLASSES = {
    5: InvalidCallError,
    6: CounterOverflowError,
    13: TypeMismatchError,
    28: OutOfStackSpaceError,
    94: NullArgumentError,
    380: InvalidArgumentError,
    -2147220503: FormError,
    -2147467259: DomError,
    35601: TreeError,
    35602: TreeError,
}
)PY";

}  // namespace

void BindErrors(py::module_& module) {
    py::exec(kErrorClasses, module.attr("__dict__"));
    for (const char* name : {"Error", "InvalidCallError", "CounterOverflowError", "TypeMismatchError",
                             "OutOfStackSpaceError", "NullArgumentError", "InvalidArgumentError", "FormError",
                             "DomError", "TreeError"}) {
        module.attr(name).attr("__module__") = "quillbank";
    }
    py::register_exception_translator([](std::exception_ptr pending) {
        try {
            if (pending) {
                std::rethrow_exception(pending);
            }
        } catch (const quillbank::Error& error) {
            py::gil_scoped_acquire gil;
            py::module_ module = py::module_::import("quillbank");
            py::object cls = module.attr("ERROR_CLASSES").attr("get")(error.Number(), module.attr("Error"));
            py::object instance = cls(error.Number(), error.Source(), error.Description());
            PyErr_SetObject(cls.ptr(), instance.ptr());
        }
    });
}

}  // namespace quillbank::python
