// For any text the lesson reader accepts: writing, reading that back and
// writing again gives the same text, apart from the "documentid" that every
// write makes new. Both written forms are checked.

#include <regex>
#include <string>

#include <quillbank/quillbank.hpp>

#include "fuzz_support.hpp"

namespace {

std::string WithoutDocumentId(const std::string& text) {
    static const std::regex documentId(R"( documentid="[^"]*")");
    return std::regex_replace(text, documentId, "", std::regex_constants::format_first_only);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillbank;
    auto lesson = Lesson::Create();
    try {
        lesson->FromXMLString(quillbank::fuzz::AsText(data, size));
    } catch (const Error& error) {
        if (!quillbank::fuzz::IsDocumentedReaderError(error)) {
            quillbank::fuzz::Finding();
        }
        return 0;
    }
    const std::string first = lesson->ToXMLString();
    auto again = Lesson::Create();
    again->FromXMLString(first);
    const std::string second = again->ToXMLString();
    if (WithoutDocumentId(first) != WithoutDocumentId(second)) {
        quillbank::fuzz::Finding();
    }
    return 0;
}
