// ChildElement::FromXMLString on any text; whatever it accepts is written
// again in both forms and cloned.

#include <quillbank/quillbank.hpp>

#include "fuzz_support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillbank;
    auto element = ChildElement::Create();
    try {
        element->FromXMLString(fuzz::AsText(data, size));
    } catch (const Error& error) {
        if (!fuzz::IsDocumentedReaderError(error)) {
            fuzz::Finding();
        }
        return 0;
    }
    // What was read is written and copied; these may raise only the
    // documented errors (a nameless map, for one, refuses to give its name).
    try {
        (void)element->ToXMLString();
        (void)element->ToClearXMLString();
        (void)element->Clone()->ToXMLString();
    } catch (const Error& error) {
        if (!fuzz::IsDocumentedReaderError(error)) {
            fuzz::Finding();
        }
    }
    return 0;
}
