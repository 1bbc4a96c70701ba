#pragma once

// Reading a lesson's text in one pass: the text is parsed once and the model
// is built straight from the parser's nodes by the same reading rules the
// facade's handles go through (reading/model_reader.hpp). The Windows build,
// whose parser is MSXML, reads through the facade (reading/facade_reading.cpp).

#include <quillbank/lesson.hpp>
#include <quillbank/xml.hpp>

namespace quillbank::detail::reading {

// Reads `lesson` from the root element of `document`, just loaded, as
// Lesson::FromXMLElement reads it.
void ReadLessonFromParse(Lesson& lesson, const xml::Document& document);

}  // namespace quillbank::detail::reading
