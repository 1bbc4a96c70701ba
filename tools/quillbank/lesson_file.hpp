#pragma once

// Reading lesson files (or standard input) into lessons.

#include <cstdint>
#include <memory>
#include <string>

#include <quillbank/lesson.hpp>
#include <quillbank/xml.hpp>

#include "text_decoding.hpp"

namespace quillbank::tool {

// The path that stands for standard input or standard output.
inline constexpr const char* kStandardStream = "-";

struct InputFile {
    std::string path;         // as given on the command line ("-" for standard input)
    std::string displayName;  // the path, or "(standard input)"
    DecodedText decoded;
};

// The largest input read, in bytes (--max-size); 2 GiB unless set.
inline constexpr std::uint64_t kDefaultMaxInputSize = std::uint64_t{2} << 30;
void SetMaxInputSize(std::uint64_t bytes);
std::uint64_t MaxInputSize();

// Reads and decodes a whole file. Raises ToolError naming the file when it
// cannot be read, is larger than MaxInputSize() (a regular file is refused
// before it is read), is empty, is UTF-16 that does not decode, or when
// memory runs out ("not enough memory to read FILE"). Each guess the
// decoder made is printed on standard error as a warning line ("quillbank:
// FILE: warning: ...") unless `printNotes` is false (check reports them as
// findings instead).
InputFile ReadInput(const std::string& path, bool printNotes = true);

// The warning line of each note, printed in one write.
void PrintNotes(const InputFile& input);

// Reads the decoded text as a lesson. Raises ToolError with the library's
// description ("XML string could not be parsed.", "Element is not a <lesson>
// element", ...) after the file's name.
std::shared_ptr<Lesson> LoadLesson(const InputFile& input);

// The same from the root element of the decoded text already loaded (with
// the clean-up FromXMLString does and without whitespace preservation, as
// it loads), for a caller that also walks the document itself: one parse
// instead of two.
std::shared_ptr<Lesson> LoadLesson(const InputFile& input, const xml::Element& root);

// ReadInput then LoadLesson.
std::shared_ptr<Lesson> ReadLesson(const std::string& path);

}  // namespace quillbank::tool
