#include "tesmar/platform/foundation/archive/internal/property_list_objects.h"

#include "tesmar/platform/foundation/NSArray.h"
#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/archive/internal/utf.h"
#include "tesmar/platform/geometry/geometry.h"

#include <cmath>
#include <limits>
#include <unordered_map>

namespace tesmar {
namespace {

double finiteReal(double value) {
    constexpr double kLargest = std::numeric_limits<double>::max();
    return finite(value, -kLargest, kLargest, 0);
}

class ToObjects {
  public:
    Ref<NSObject> operator()(PropertyList::Null) const { return nullptr; }
    Ref<NSObject> operator()(bool value) const { return NSNumber::numberWith(value); }
    Ref<NSObject> operator()(PropertyList::Integer value) const {
        return NSNumber::numberWith(*numberFromPropertyList(value));
    }
    Ref<NSObject> operator()(float value) const { return (*this)(static_cast<double>(value)); }
    Ref<NSObject> operator()(double value) const { return NSNumber::numberWith(finiteReal(value)); }
    Ref<NSObject> operator()(PropertyList::Date) const { return nullptr; }
    Ref<NSObject> operator()(PropertyList::UID) const { return nullptr; }
    Ref<NSObject> operator()(const PropertyList::Set&) const { return nullptr; }
    Ref<NSObject> operator()(const PropertyList::Data& value) {
        return makeOnce(&value, [&] { return NSData::dataWithBytes(value.bytes); });
    }
    Ref<NSObject> operator()(const std::string& value) {
        return makeOnce(&value, [&] {
            return isValidUtf8(value) ? NSString::stringWithString(value) : nullptr;
        });
    }
    Ref<NSObject> operator()(const PropertyList::Array& value) {
        return makeOnce(&value, [&] { return array(value); });
    }
    Ref<NSObject> operator()(const PropertyList::Dictionary& value) {
        return makeOnce(&value, [&] { return dictionary(value); });
    }

  private:
    // Shared contents become a shared object.
    template <class Make>
    Ref<NSObject> makeOnce(const void* contents, Make&& make) {
        if (const auto known = made_.find(contents); known != made_.end())
            return known->second;
        Ref<NSObject> object = make();
        made_.emplace(contents, object);
        return object;
    }

    Ref<NSArray> array(const PropertyList::Array& values) {
        std::vector<Ref<NSObject>> objects;
        objects.reserve(values.size());
        for (const PropertyList& value : values) {
            objects.push_back(value.visit(*this));
            if (!objects.back())
                return nullptr;
        }
        return NSArray::arrayWithObjects(std::move(objects));
    }

    Ref<NSDictionary> dictionary(const PropertyList::Dictionary& values) {
        NSDictionary::Entries entries;
        for (const auto& [key, value] : values) {
            const auto& name = *key.get<std::string>();
            // Every entry owns a copy of its key, even where the list shares it.
            Ref<NSObject> object = budget_.spendBytes(name.size()) ? value.visit(*this) : nullptr;
            if (!object || !isValidUtf8(name))
                return nullptr;
            entries.emplace(name, std::move(object));
        }
        return NSDictionary::dictionaryWithEntries(std::move(entries));
    }

    std::unordered_map<const void*, Ref<NSObject>> made_;
    DecodeBudget budget_{kPreferencesLimits};
};

// Copies an object at each reference to it.
class FromObjects {
  public:
    std::optional<PropertyList> convert(const NSObject& object) {
        if (!spend(1))
            return std::nullopt;
        if (const auto* string = dynamic_cast<const NSString*>(&object))
            return text(string->text());
        if (const auto* number = dynamic_cast<const NSNumber*>(&object))
            return std::visit([](auto value) { return PropertyList(value); }, number->value());
        if (const auto* data = dynamic_cast<const NSData*>(&object)) {
            if (spend(data->bytes().size()))
                return PropertyList::Data{data->bytes()};
        } else if (const auto* array = dynamic_cast<const NSArray*>(&object)) {
            return nested([&] { return list(*array); });
        } else if (const auto* dictionary = dynamic_cast<const NSDictionary*>(&object)) {
            return nested([&] { return entries(*dictionary); });
        }
        return std::nullopt;
    }

  private:
    // Leaves levels for the containers that the list is put into.
    static constexpr DecodeLimits kLimits{kPreferencesLimits.bytes, kPreferencesLimits.values,
                                          kPreferencesLimits.depth - 8};

    // The bytes of a value, and the most that its marker, count and reference take in a file.
    bool spend(std::size_t bytes) {
        constexpr std::size_t kEachValue = 16;
        return budget_.spendBytes(bytes + kEachValue);
    }

    template <class Convert>
    std::optional<PropertyList> nested(Convert&& convert) {
        std::optional<PropertyList> result;
        budget_.measure([&] { result = convert(); });
        return result;
    }

    std::optional<PropertyList> text(const std::string& text) {
        if (!spend(text.size()) || !isValidUtf8(text))
            return std::nullopt;
        return text;
    }

    std::optional<PropertyList> list(const NSArray& array) {
        PropertyList::Array values;
        for (const auto& object : array.objects()) {
            auto value = convert(*object);
            if (!value)
                return std::nullopt;
            values.push_back(*std::move(value));
        }
        return values;
    }

    std::optional<PropertyList> entries(const NSDictionary& dictionary) {
        PropertyList::Dictionary values;
        for (const auto& [key, object] : dictionary.entries()) {
            auto name = text(key);
            auto value = name ? convert(*object) : std::nullopt;
            if (!value)
                return std::nullopt;
            values.push_back({*std::move(name), *std::move(value)});
        }
        return values;
    }

    DecodeBudget budget_{kLimits};
};

} // namespace

std::optional<NSNumber::Number> numberFromPropertyList(const PropertyList& list) {
    if (const auto* boolean = list.get<bool>())
        return *boolean;
    if (const auto* single = list.get<float>())
        return static_cast<double>(*single);
    if (const auto* real = list.get<double>())
        return *real;
    if (const auto* integer = list.get<PropertyList::Integer>()) {
        if (integer->fitsLongLong())
            return static_cast<long long>(integer->low);
        return std::ldexp(static_cast<double>(integer->high), 64) +
               static_cast<double>(integer->low);
    }
    return std::nullopt;
}

Ref<NSObject> objectFromPropertyList(const PropertyList& list) {
    ToObjects toObjects;
    return list.visit(toObjects);
}

std::optional<PropertyList> propertyListFromObject(const NSObject& object) {
    return FromObjects().convert(object);
}

} // namespace tesmar
