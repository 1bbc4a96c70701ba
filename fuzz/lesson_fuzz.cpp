// Lesson::FromXMLString on any text; whatever it accepts is written again in
// both forms and copied.

#include <quillbank/quillbank.hpp>

#include "fuzz_support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillbank;
    auto lesson = Lesson::Create();
    try {
        lesson->FromXMLString(fuzz::AsText(data, size));
    } catch (const Error& error) {
        if (!fuzz::IsDocumentedReaderError(error)) {
            fuzz::Finding();
        }
        return 0;
    }
    // What was read is written and copied; these may raise only the
    // documented errors (a nameless map, for one, refuses to give its name).
    try {
        (void)lesson->ToXMLString();
        (void)lesson->ToClearXMLString();
        (void)lesson->Clone();
        (void)lesson->Duplicate();
    } catch (const Error& error) {
        if (!fuzz::IsDocumentedReaderError(error)) {
            fuzz::Finding();
        }
    }
    return 0;
}
