// An argument or a result of a message that is sent by selector.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace tesmar {

// std::monostate means "no value", such as the result of a void operation. A list of objects is one
// NSArray.
using Value = std::variant<std::monostate, bool, double, std::string, CGRect, Ref<NSObject>,
                           std::vector<std::string>, std::vector<double>>;

namespace runtime {

// Throws the error that performSelector turns into a fatal one and performSelectorIfItFits into
// nothing. `expected` names the type that the parameter takes.
[[noreturn]] TESMAR_API void valueMismatch(const char* expected, const Value& value);

template <class T>
struct IsRef : std::false_type {};
template <class T>
struct IsRef<Ref<T>> : std::true_type {};
template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};
template <class T>
struct IsRefList : std::false_type {};
template <class T>
struct IsRefList<std::vector<Ref<T>>> : std::true_type {};

TESMAR_API Ref<NSObject> arrayValue(std::vector<Ref<NSObject>> elements);
TESMAR_API std::vector<Ref<NSObject>> arrayElements(const Ref<NSObject>& array);

} // namespace runtime

// A C++ result as a value. A reference to something that is not an NSObject, such as a delegate
// that the host implements in C++, becomes std::monostate.
template <class T>
Value toValue(const T& result) {
    using namespace runtime;
    if constexpr (IsRef<T>::value) {
        auto object = std::dynamic_pointer_cast<NSObject>(result);
        return object ? Value(std::move(object)) : Value();
    } else if constexpr (IsRefList<T>::value)
        return arrayValue(std::vector<Ref<NSObject>>(result.begin(), result.end()));
    else
        return Value(result);
}

// The value as a parameter of type T. Numbers and Booleans convert into one another; std::monostate
// becomes a null reference or an empty optional; any other difference in type is a mismatch (see
// valueMismatch). An element of a list that is not of the parameter's class becomes null.
template <class Parameter>
auto fromValue(const Value& value) -> std::remove_cvref_t<Parameter> {
    using namespace runtime;
    using T = std::remove_cvref_t<Parameter>;
    if constexpr (IsOptional<T>::value) {
        if (std::holds_alternative<std::monostate>(value))
            return std::nullopt;
        return fromValue<typename T::value_type>(value);
    } else if constexpr (IsRef<T>::value) {
        if (std::holds_alternative<std::monostate>(value))
            return nullptr;
        const auto* object = std::get_if<Ref<NSObject>>(&value);
        T result =
            object ? std::dynamic_pointer_cast<typename T::element_type>(*object) : T(nullptr);
        if (!result && !(object && !*object))
            valueMismatch("an object of the parameter's class", value);
        return result;
    } else if constexpr (IsRefList<T>::value) {
        T result;
        for (auto& element : arrayElements(fromValue<Ref<NSObject>>(value)))
            result.push_back(
                std::dynamic_pointer_cast<typename T::value_type::element_type>(element));
        return result;
    } else if constexpr (std::is_arithmetic_v<T>) {
        if (const auto* number = std::get_if<double>(&value))
            return static_cast<T>(*number);
        if (const auto* boolean = std::get_if<bool>(&value))
            return static_cast<T>(*boolean);
        valueMismatch("a number", value);
    } else if constexpr (std::is_same_v<T, std::string_view>) {
        if (const auto* text = std::get_if<std::string>(&value))
            return *text;
        valueMismatch("a string", value);
    } else {
        if (const auto* exact = std::get_if<T>(&value))
            return *exact;
        valueMismatch("another type", value);
    }
}

} // namespace tesmar
