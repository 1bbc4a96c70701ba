#pragma once

// The --json face of info, tree, props, check and diff: one JSON document a
// file, on one line (so that several files make JSON Lines). The shape is
// docs/quillbank-report.schema.json; kReportVersion changes when it does.

#include <functional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include <quillbank/persisted_property_collection.hpp>

namespace quillbank::tool {

using Json = nlohmann::ordered_json;

inline constexpr int kReportVersion = 1;

// {"quillbank": 1, "command": COMMAND, "file": FILE}, to be filled.
Json ReportHeader(std::string_view command, std::string_view file);

// The document on one line, ending with a line feed.
std::string JsonLine(const Json& document);

// The output of a file that could not be done: the header and "error".
std::string JsonFailureLine(std::string_view command, const std::string& file, const std::string& message);

// JsonFailureLine for RunBatch.
std::function<std::string(const std::string&, const std::string&)> JsonFailure(std::string command);

// A property's value: strings, numbers and booleans as themselves; a date
// and a colour as the text `props` shows; records as objects; a bag or list
// as {"count": N}.
Json ValueJson(const PersistedPropertyCollection& bag, const std::string& name);

}  // namespace quillbank::tool
