#pragma once

// The growing buffer of the direct writer: a string kept as long as its
// capacity, with the length written so far beside it, so that appending a
// piece is a copy and a comparison instead of a call into the string.

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace quillbank::xml {

class TextBuffer {
public:
    void append(const char* data, std::size_t size) {
        if (text_.size() - used_ < size) {
            Expand(size);
        }
        char* to = text_.data() + used_;
        used_ += size;
        // Most pieces are a few bytes: copied here rather than by a call.
        if (size <= 16) {
            for (std::size_t i = 0; i < size; ++i) {
                to[i] = data[i];
            }
            return;
        }
        std::memcpy(to, data, size);
    }
    void append(std::string_view text) { append(text.data(), text.size()); }
    TextBuffer& operator+=(std::string_view text) {
        append(text.data(), text.size());
        return *this;
    }
    void push_back(char c) {
        if (used_ == text_.size()) {
            Expand(1);
        }
        text_[used_++] = c;
    }

    std::size_t size() const { return used_; }
    std::string_view View() const { return std::string_view(text_.data(), used_); }
    // Takes back what was written after the first `size` bytes.
    void Truncate(std::size_t size) { used_ = size; }
    // The text written; the buffer is left empty.
    std::string Take() {
        text_.resize(used_);
        used_ = 0;
        return std::move(text_);
    }

private:
    void Expand(std::size_t size) {
        std::size_t capacity = text_.size() < 256 ? 256 : text_.size() * 2;
        if (capacity - used_ < size) {
            capacity = used_ + size;
        }
        text_.resize(capacity);
    }

    std::string text_;
    std::size_t used_ = 0;
};

}  // namespace quillbank::xml
