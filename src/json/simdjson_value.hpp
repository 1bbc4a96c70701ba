#pragma once

// A value of a document parsed by simdjson, seen through the few questions
// the lesson reader asks of a JSON value (see json/lesson_reader.hpp).

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <simdjson.h>

namespace quillbank::json_form {

class SimdjsonValue {
public:
    explicit SimdjsonValue(simdjson::dom::element element) noexcept : element_(element) {}

    bool IsObject() const noexcept { return Type() == Kind::OBJECT; }
    bool IsArray() const noexcept { return Type() == Kind::ARRAY; }
    bool IsString() const noexcept { return Type() == Kind::STRING; }
    bool IsBoolean() const noexcept { return Type() == Kind::BOOL; }
    bool IsNull() const noexcept { return Type() == Kind::NULL_VALUE; }
    bool IsNumber() const noexcept {
        const Kind kind = Type();
        return kind == Kind::INT64 || kind == Kind::UINT64 || kind == Kind::DOUBLE;
    }
    // A whole number written without a fraction or an exponent.
    bool IsInteger() const noexcept {
        const Kind kind = Type();
        return kind == Kind::INT64 || kind == Kind::UINT64;
    }
    // An integer from 0 up.
    bool IsUnsigned() const noexcept {
        const Kind kind = Type();
        return kind == Kind::UINT64 || (kind == Kind::INT64 && element_.get_int64().value_unsafe() >= 0);
    }

    // Each of these only for a value of its kind.
    std::string_view Text() const noexcept { return element_.get_string().value_unsafe(); }
    bool Boolean() const noexcept { return element_.get_bool().value_unsafe(); }
    std::uint64_t Unsigned() const noexcept {
        return Type() == Kind::UINT64 ? element_.get_uint64().value_unsafe()
                                      : static_cast<std::uint64_t>(element_.get_int64().value_unsafe());
    }
    std::int64_t Signed() const noexcept { return element_.get_int64().value_unsafe(); }
    // Any number as a double.
    double Number() const noexcept {
        switch (Type()) {
            case Kind::INT64:
                return static_cast<double>(element_.get_int64().value_unsafe());
            case Kind::UINT64:
                return static_cast<double>(element_.get_uint64().value_unsafe());
            default:
                return element_.get_double().value_unsafe();
        }
    }

    // Calls visit(key, value) for each member of an object, in the order written.
    template <class Visit>
    void ForEachMember(Visit&& visit) const {
        // Kept apart: the result that get_object gives dies with its statement.
        const simdjson::dom::object object = element_.get_object().value_unsafe();
        for (const simdjson::dom::key_value_pair member : object) {
            visit(member.key, SimdjsonValue(member.value));
        }
    }

    std::size_t Size() const noexcept { return element_.get_array().value_unsafe().size(); }

    // Calls visit(index, value) for each item of an array, in order.
    template <class Visit>
    void ForEachItem(Visit&& visit) const {
        std::size_t index = 0;
        const simdjson::dom::array items = element_.get_array().value_unsafe();
        for (const simdjson::dom::element item : items) {
            visit(index++, SimdjsonValue(item));
        }
    }

private:
    using Kind = simdjson::dom::element_type;

    Kind Type() const noexcept { return element_.type(); }

    simdjson::dom::element element_;
};

}  // namespace quillbank::json_form
