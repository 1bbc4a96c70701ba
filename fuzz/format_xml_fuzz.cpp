// Functions::FormatXMLString and CleanXMLString on any text: no crash, no
// leak, no error other than the documented ones.

#include <quillbank/quillbank.hpp>

#include "fuzz_support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillbank;
    const std::string_view text = fuzz::AsText(data, size);
    try {
        (void)Functions::CleanXMLString(text);
        (void)Functions::FormatXMLString(text);
    } catch (const Error& error) {
        if (!fuzz::IsDocumentedReaderError(error)) {
            fuzz::Finding();
        }
        return 0;
    }
    return 0;
}
