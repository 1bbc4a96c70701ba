#pragma once

// What the JSON tests share: the normal form of a lesson without its
// "documentid", and the lesson files the round trips start from.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

namespace quillbank::testing {

// The normal XML form with the "documentid", new at every writing, blanked.
inline std::string NormalFormWithoutDocumentID(const Lesson& lesson) {
    std::string text = lesson.ToXMLString();
    const std::string attribute = "documentid=\"";
    if (const auto start = text.find(attribute); start != std::string::npos) {
        const auto valueStart = start + attribute.size();
        text.erase(valueStart, text.find('"', valueStart) - valueStart);
    }
    return text;
}

inline std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Every regular file below `folder` (none when it does not exist), sorted.
inline std::vector<std::filesystem::path> FilesBelow(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    if (!std::filesystem::is_directory(folder)) {
        return files;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

// When QUILLBANK_JSON_DUMP_DIR is set, the JSON is also written there as
// `name`.json, for the schema check (tests/json/check_schema.py).
inline void DumpJson(const std::string& name, const std::string& json) {
    const char* folder = std::getenv("QUILLBANK_JSON_DUMP_DIR");
    if (folder == nullptr || *folder == '\0') {
        return;
    }
    std::string fileName = name;
    for (char& c : fileName) {
        if (c == '/' || c == '\\' || c == ':') {
            c = '_';
        }
    }
    std::ofstream(std::filesystem::path(folder) / (fileName + ".json"), std::ios::binary) << json;
}

}  // namespace quillbank::testing
