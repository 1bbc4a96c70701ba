// PersistedPropertyCollection::FromXMLString on any text; whatever it
// accepts is written again in both forms and cloned.

#include <quillbank/quillbank.hpp>

#include "fuzz_support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillbank;
    auto bag = PersistedPropertyCollection::Create();
    try {
        bag->FromXMLString(fuzz::AsText(data, size));
    } catch (const Error& error) {
        if (!fuzz::IsDocumentedReaderError(error)) {
            fuzz::Finding();
        }
        return 0;
    }
    // What was read is written and copied; these may raise only the
    // documented errors (a nameless map, for one, refuses to give its name).
    try {
        (void)bag->ToXMLString();
        (void)bag->ToClearXMLString();
        (void)bag->Clone()->ToXMLString();
        for (const std::string& name : bag->GetPropertyNameArray()) {
            (void)bag->GetValue(name);
        }
    } catch (const Error& error) {
        if (!fuzz::IsDocumentedReaderError(error)) {
            fuzz::Finding();
        }
    }
    return 0;
}
