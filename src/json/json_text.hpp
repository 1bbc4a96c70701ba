#pragma once

// JSON text written as it goes, without a document in between: the writer
// of a lesson calls it value by value. Strings are escaped as JSON requires
// (and checked to be UTF-8); doubles are written in the shortest form that
// reads back to the same value, always with a fraction or an exponent so
// that they read back as doubles.

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quillbank::json_form {

// Raised for text that is not UTF-8.
class NotUtf8 : public std::runtime_error {
public:
    NotUtf8() : std::runtime_error("text is not UTF-8") {}
};

class JsonText {
public:
    // Compact when indent is 0 or less; else indented by that many spaces a level.
    explicit JsonText(int indent) : indent_(indent > 0 ? indent : 0) {}

    void BeginObject();
    void EndObject();
    void BeginArray();
    void EndArray();
    // The key of the next member of the object being written.
    void Key(std::string_view key);

    void String(std::string_view text);
    void Integer(std::int64_t value);
    // A finite double.
    void Double(double value);
    void Boolean(bool value);
    void Null();

    std::string Take() { return std::move(out_); }

private:
    void BeforeValue();
    // The text in quotes, escaped.
    void Quoted(std::string_view text);
    void NewLine();
    void Open(char bracket);
    void Close(char bracket);

    std::string out_;
    int indent_;
    // Per open object or array: whether nothing has been written in it yet.
    std::vector<bool> empty_;
    bool afterKey_ = false;
};

}  // namespace quillbank::json_form
