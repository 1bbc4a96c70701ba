// The base64 decoders: the "bin.base64" reader of the document model and the
// two coders of encoded properties. Text that decodes must encode back to
// text that decodes to the same bytes.

#include <span>
#include <vector>

#include <quillbank/error.hpp>

#include "fuzz_support.hpp"
#include "support/base64_coders.hpp"
#include "xml/base64.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillbank;
    const std::string_view text = fuzz::AsText(data, size);

    if (const auto bytes = xml::DecodeBase64Text(text)) {
        const std::string again = xml::EncodeBase64Text(std::span<const std::uint8_t>(*bytes));
        const auto back = xml::DecodeBase64Text(again);
        if (!back || *back != *bytes) {
            fuzz::Finding();
        }
    }
    // Raw bytes are a payload too.
    const std::string encoded = xml::EncodeBase64Text(std::span<const std::uint8_t>(data, size));
    const auto decoded = xml::DecodeBase64Text(encoded);
    if (!decoded || !std::equal(decoded->begin(), decoded->end(), data, data + size) || decoded->size() != size) {
        fuzz::Finding();
    }

    for (auto decode : {&support::DecodeBase64, &support::DecodeBase64Utf8}) {
        try {
            (void)decode(text);
        } catch (const Error& error) {
            if (error.Number() != ErrXmlDom) {
                fuzz::Finding();
            }
        }
    }
    return 0;
}
