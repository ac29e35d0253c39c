#include "tools/drive/json_values.h"

#include "tesmar/platform/foundation/NSArray.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/platform/text/UIFont.h"
#include "tools/drive/fault.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace tesmar::drive {
namespace {

constexpr double kLargestExactInteger = 9007199254740992; // 2^53
constexpr double kBillion = 1e9;

Json fromColor(const UIColor& color) {
    if (color.space() == UIColor::Space::gray)
        return {{"white", number(color.white())}, {"alpha", number(color.alpha())}};
    return {{"red", number(color.red())},
            {"green", number(color.green())},
            {"blue", number(color.blue())},
            {"alpha", number(color.alpha())}};
}

std::string describeOther(const NSObject& object) {
    if (const auto* string = dynamic_cast<const NSString*>(&object))
        return string->text();
    if (const auto* scalar = dynamic_cast<const NSNumber*>(&object)) {
        if (const bool* boolean = std::get_if<bool>(&scalar->value()))
            return *boolean ? "true" : "false";
        return serialize(number(scalar->doubleValue()));
    }
    return std::string(object.isa().name());
}

template <class List>
Json fromList(const List& list) {
    Json array = Json::array();
    for (const auto& element : list)
        array.push_back(fromValue(toValue(element)));
    return array;
}

// Whether these are the keys of the object.
bool hasExactly(const Json& json, std::initializer_list<const char*> keys) {
    return json.size() == keys.size() &&
           std::all_of(keys.begin(), keys.end(),
                       [&](const char* key) { return json.contains(key); });
}

double component(const Json& json, const char* key) {
    const Json& value = json.at(key);
    if (!value.is_number())
        throw Fault("\"" + std::string(key) + "\" must be a number in " + serialize(json));
    return value.get<double>();
}

Ref<NSObject> toFont(const Json& json) {
    if (!json.at("name").is_string())
        throw Fault("\"name\" must be a text in " + serialize(json));
    auto font = UIFont::fontWithName(json.at("name").get<std::string>(), component(json, "size"));
    if (!font)
        throw Fault("no such font: " + serialize(json));
    return font;
}

Ref<NSObject> toObject(const Json& json) {
    if (json.is_string())
        return NSString::stringWithString(json.get<std::string>());
    if (json.is_boolean())
        return NSNumber::numberWith(json.get<bool>());
    if (json.is_number_integer())
        return NSNumber::numberWith(json.get<long long>());
    if (json.is_number())
        return NSNumber::numberWith(json.get<double>());
    if (json.is_object()) {
        if (hasExactly(json, {"white", "alpha"}))
            return UIColor::colorWithWhite(component(json, "white"), component(json, "alpha"));
        if (hasExactly(json, {"red", "green", "blue", "alpha"}))
            return UIColor::colorWithRed(component(json, "red"), component(json, "green"),
                                         component(json, "blue"), component(json, "alpha"));
        if (hasExactly(json, {"name", "size"}))
            return toFont(json);
        if (hasExactly(json, {"other"}) && json.at("other").is_string())
            return NSString::stringWithString(json.at("other").get<std::string>());
    }
    throw Fault("neither a colour, nor a font, nor another value: " + serialize(json));
}

} // namespace

// --- To JSON ------------------------------------------------------------------------------------

Json number(double value) {
    if (!std::isfinite(value))
        return nullptr;
    if (value == std::trunc(value) && std::abs(value) <= kLargestExactInteger)
        return static_cast<long long>(value);
    return value;
}

Json rounded(double value) {
    return number(std::round(value * kBillion) / kBillion);
}

Json rounded(const CGRect& rect) {
    return {rounded(rect.origin.x), rounded(rect.origin.y), rounded(rect.size.width),
            rounded(rect.size.height)};
}

Json fromObject(const Ref<NSObject>& object) {
    if (!object)
        return nullptr;
    if (const auto color = as<UIColor>(object))
        return fromColor(*color);
    if (const auto font = as<UIFont>(object))
        return {{"name", font->fontName()}, {"size", number(font->pointSize())}};
    return Json::object({{"other", describeOther(*object)}});
}

Json fromDictionary(const Ref<NSDictionary>& dictionary) {
    if (!dictionary)
        return nullptr;
    Json json = Json::object();
    for (const auto key :
         {NSForegroundColorAttributeName, NSBackgroundColorAttributeName, NSFontAttributeName})
        if (const auto value = dictionary->objectForKey(key))
            json[std::string(key)] = fromObject(value);
    for (const auto& [key, value] : dictionary->entries())
        if (!json.contains(key))
            json[key] = fromObject(value);
    return json;
}

Json fromValue(const Value& value) {
    struct Converter {
        Json operator()(std::monostate) const { return nullptr; }
        Json operator()(bool boolean) const { return boolean; }
        Json operator()(double real) const { return number(real); }
        Json operator()(const std::string& string) const { return string; }
        Json operator()(const CGRect& rect) const { return rounded(rect); }
        Json operator()(const Ref<NSObject>& object) const {
            if (const auto dictionary = as<NSDictionary>(object))
                return fromDictionary(dictionary);
            if (const auto array = as<NSArray>(object))
                return fromList(array->objects());
            return fromObject(object);
        }
        Json operator()(const std::vector<std::string>& strings) const { return strings; }
        Json operator()(const std::vector<double>& numbers) const { return fromList(numbers); }
    };
    return std::visit(Converter{}, value);
}

std::string serialize(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// --- From JSON ----------------------------------------------------------------------------------

Ref<NSMutableDictionary> toDictionary(const Json& json) {
    if (!json.is_object())
        throw Fault("no dictionary: " + serialize(json));
    auto dictionary = make<NSMutableDictionary>();
    for (const auto& [key, value] : json.items())
        dictionary->setObject(toObject(value), key);
    return dictionary;
}

Value toArgument(const Json& json) {
    if (json.is_null())
        return {};
    if (json.is_boolean())
        return json.get<bool>();
    if (json.is_number())
        return json.get<double>();
    if (json.is_string())
        return json.get<std::string>();
    const bool isOneObject = hasExactly(json, {"white", "alpha"}) ||
                             hasExactly(json, {"name", "size"}) ||
                             hasExactly(json, {"red", "green", "blue", "alpha"});
    return isOneObject ? Value(toObject(json)) : Value(Ref<NSObject>(toDictionary(json)));
}

} // namespace tesmar::drive
