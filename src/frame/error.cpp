#include <quillbank/error.hpp>

#include "frame/raise.hpp"

namespace quillbank {

Error::Error(std::int32_t number, std::string source, std::string description)
    : std::runtime_error(source + ": " + description),
      number_(number),
      source_(std::move(source)),
      description_(std::move(description)) {}

namespace frame {

void Raise(std::int32_t number, std::string source, std::string description) {
    throw Error(number, std::move(source), std::move(description));
}

std::string NotAnElementDescription(const char* elementName) {
    return std::string("Element is not a <") + elementName + "> element";
}

}  // namespace frame
}  // namespace quillbank
