// Variant values, dates and property values between the library and Python.

#include <cmath>
#include <cstdint>
#include <limits>

#include <pybind11/pybind11.h>

#include "python/python_support.hpp"

namespace quillbank::python {

namespace {

constexpr double kMicrosecondsPerDay = 86400.0 * 1e6;

py::object Epoch() {
    return py::module_::import("datetime").attr("datetime")(1899, 12, 30);
}

}  // namespace

py::object DateToPython(Date value) {
    if (!std::isfinite(value)) {
        throw py::value_error("the date is not a finite number");
    }
    // The whole days count from the epoch; the fraction is the time of day,
    // also for days before the epoch (-1.25 is 1899-12-29 06:00).
    const double whole = std::trunc(value);
    const double microseconds = std::round(std::fabs(value - whole) * kMicrosecondsPerDay);
    py::object timedelta = py::module_::import("datetime").attr("timedelta");
    return Epoch() + timedelta(py::arg("days") = whole, py::arg("microseconds") = microseconds);
}

Date DateFromPython(const py::handle& value) {
    py::module_ datetime = py::module_::import("datetime");
    if (py::isinstance(value, datetime.attr("datetime"))) {
        py::object naive = value.attr("replace")(py::arg("tzinfo") = py::none());
        py::object delta = naive - Epoch();
        const auto days = delta.attr("days").cast<std::int64_t>();
        const double fraction = (delta.attr("seconds").cast<double>() * 1e6 +
                                 delta.attr("microseconds").cast<double>()) /
                                kMicrosecondsPerDay;
        return days >= 0 ? static_cast<double>(days) + fraction : static_cast<double>(days) - fraction;
    }
    if (py::isinstance(value, datetime.attr("date"))) {
        return DateFromPython(datetime.attr("datetime")(value.attr("year"), value.attr("month"), value.attr("day")));
    }
    if (py::isinstance<py::float_>(value) || (py::isinstance<py::int_>(value) && !py::isinstance<py::bool_>(value))) {
        return value.cast<double>();
    }
    throw py::type_error("expected a datetime.datetime, a datetime.date or an automation date number");
}

py::object ToPython(const Variant& value) {
    switch (value.GetKind()) {
        case Variant::Kind::Empty:
        case Variant::Kind::Nothing:
            return py::none();
        case Variant::Kind::Boolean:
            return py::bool_(value.AsBoolean());
        case Variant::Kind::Long:
            return py::int_(value.AsLong());
        case Variant::Kind::Double:
            return py::float_(value.AsDouble());
        case Variant::Kind::String:
            return py::str(value.AsString());
        case Variant::Kind::Date:
            return DateToPython(value.AsDate());
        case Variant::Kind::Font:
            return py::cast(value.AsFont());
        case Variant::Kind::Rectangle:
            return py::cast(value.AsRectangle());
        case Variant::Kind::Asset:
            return py::cast(value.AsAsset());
        case Variant::Kind::Location:
            return py::cast(value.AsLocation());
        case Variant::Kind::PPC:
            return py::cast(value.AsPPC());
        case Variant::Kind::CEC:
            return py::cast(value.AsCEC());
    }
    return py::none();
}

void SetFromPython(PersistedPropertyCollection& bag, std::string_view name, const py::handle& value,
                   std::int32_t encodingType) {
    const auto encoding = static_cast<EncodingTypes>(encodingType);
    py::module_ datetime = py::module_::import("datetime");
    if (py::isinstance<py::bool_>(value)) {
        bag.SetBoolean(name, value.cast<bool>(), encoding);
    } else if (py::isinstance<py::int_>(value)) {
        const auto number = value.cast<long long>();
        if (number < std::numeric_limits<std::int32_t>::min() || number > std::numeric_limits<std::int32_t>::max()) {
            throw py::value_error("an int property holds a 32-bit integer (-2147483648 to 2147483647)");
        }
        bag.SetLong(name, static_cast<std::int32_t>(number), encoding);
    } else if (py::isinstance<py::float_>(value)) {
        bag.SetDouble(name, value.cast<double>(), encoding);
    } else if (py::isinstance<py::str>(value)) {
        bag.SetString(name, value.cast<std::string>(), encoding);
    } else if (py::isinstance(value, datetime.attr("date"))) {
        bag.SetDate(name, DateFromPython(value), encoding);
    } else if (py::isinstance<FontData>(value)) {
        bag.SetFont(name, value.cast<const FontData&>(), encoding);
    } else if (py::isinstance<Rectangle>(value)) {
        bag.SetRectangle(name, value.cast<const Rectangle&>(), encoding);
    } else if (py::isinstance<AssetData>(value)) {
        bag.SetAsset(name, value.cast<const AssetData&>(), encoding);
    } else if (py::isinstance<LocationData>(value)) {
        LocationData location = value.cast<LocationData>();
        bag.SetLocation(name, location, encoding);
    } else if (py::isinstance<PersistedPropertyCollection>(value)) {
        bag.SetPPC(name, value.cast<std::shared_ptr<PersistedPropertyCollection>>(), encoding);
    } else if (py::isinstance<ChildElementCollection>(value)) {
        bag.SetCEC(name, value.cast<std::shared_ptr<ChildElementCollection>>(), encoding);
    } else {
        throw py::type_error(
            "a property value is a bool, int, float, str, datetime, FontData, Rectangle, AssetData, LocationData, "
            "PersistedPropertyCollection or ChildElementCollection, not " +
            py::str(py::type::of(value).attr("__name__")).cast<std::string>());
    }
}

py::iterator IterateSnapshot(const py::list& items) { return py::iter(items); }

}  // namespace quillbank::python
