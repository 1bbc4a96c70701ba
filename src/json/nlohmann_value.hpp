#pragma once

// A value of an nlohmann-json document, seen through the few questions the
// lesson reader asks of a JSON value (see json/lesson_reader.hpp).

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace quillbank::json_form {

class NlohmannValue {
public:
    // Objects keep their keys in the order written.
    using Document = nlohmann::ordered_json;

    explicit NlohmannValue(const Document& value) noexcept : value_(&value) {}

    bool IsObject() const noexcept { return value_->is_object(); }
    bool IsArray() const noexcept { return value_->is_array(); }
    bool IsString() const noexcept { return value_->is_string(); }
    bool IsBoolean() const noexcept { return value_->is_boolean(); }
    bool IsNull() const noexcept { return value_->is_null(); }
    bool IsNumber() const noexcept { return value_->is_number(); }
    // A whole number written without a fraction or an exponent.
    bool IsInteger() const noexcept { return value_->is_number_integer(); }
    // An integer from 0 up.
    bool IsUnsigned() const noexcept { return value_->is_number_unsigned(); }

    // Each of these only for a value of its kind.
    std::string_view Text() const noexcept { return value_->get_ref<const std::string&>(); }
    bool Boolean() const noexcept { return value_->get<bool>(); }
    std::uint64_t Unsigned() const noexcept { return value_->get<std::uint64_t>(); }
    std::int64_t Signed() const noexcept { return value_->get<std::int64_t>(); }
    // Any number as a double.
    double Number() const noexcept { return value_->get<double>(); }

    // Calls visit(key, value) for each member of an object, in the order written.
    template <class Visit>
    void ForEachMember(Visit&& visit) const {
        for (const auto& [key, member] : value_->get_ref<const Document::object_t&>()) {
            visit(std::string_view(key), NlohmannValue(member));
        }
    }

    std::size_t Size() const noexcept { return value_->size(); }

    // Calls visit(index, value) for each item of an array, in order.
    template <class Visit>
    void ForEachItem(Visit&& visit) const {
        const auto& items = value_->get_ref<const Document::array_t&>();
        for (std::size_t i = 0; i < items.size(); ++i) {
            visit(i, NlohmannValue(items[i]));
        }
    }

private:
    const Document* value_;
};

}  // namespace quillbank::json_form
