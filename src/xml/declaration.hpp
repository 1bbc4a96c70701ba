#pragma once

// The XML declaration as the DOM writes it in "xml", shared by both
// backends.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillbank::xml {

// Appends `<?xml version="..."?>`: the version given (1.0 when there is none),
// an encoding only when it names UTF-16 (the "xml" text is Unicode, so any
// other encoding the declaration named no longer holds), and a standalone
// declaration as it stands. A null pointer is an attribute the declaration
// does not have.
void AppendDeclaration(std::string& out, const std::string* version, const std::string* encoding,
                       const std::string* standalone);

// The attributes of a declaration's text (`version="1.0" encoding='x'`), each
// name and value, in order; what is not such a pair is skipped.
std::vector<std::pair<std::string, std::string>> DeclarationAttributes(std::string_view data);

}  // namespace quillbank::xml
