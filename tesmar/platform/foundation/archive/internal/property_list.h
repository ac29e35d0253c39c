// A property list as a tree of values, and its binary form. Every value keeps its type, so a list
// of another program can be read, changed in one place and written back with the rest unchanged.
#pragma once

#include "tesmar/platform/foundation/internal/DecodeBudget.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace tesmar {

// An immutable value, cheap to copy: copies share their contents. Any thread.
class PropertyList {
  public:
    struct Null {};
    // A signed 128-bit number in two's complement.
    struct Integer {
        std::int64_t high = 0;
        std::uint64_t low = 0;

        static Integer of(long long value) {
            return {value < 0 ? -1 : 0, static_cast<std::uint64_t>(value)};
        }
        bool fitsLongLong() const { return high == (static_cast<std::int64_t>(low) < 0 ? -1 : 0); }
        bool operator==(const Integer&) const = default;
    };
    struct Date {
        double seconds = 0; // since the start of 2001, UTC; may be NaN or infinite
    };
    struct Data {
        std::string bytes;
    };
    // The index of an object in the table of a keyed archive.
    struct UID {
        std::uint64_t value = 0;
    };
    struct Entry;
    using Array = std::vector<PropertyList>;
    struct Set {
        Array elements; // in the written order
    };
    // In the written order. Keys may repeat; find() returns the first.
    using Dictionary = std::vector<Entry>;

    // A float is written with 32 bits, a double with 64; either may be NaN or infinite. Text is
    // UTF-8, but an unpaired surrogate, which a file may hold, is encoded as three bytes like any
    // other character: isValidUtf8() rejects such text.
    PropertyList(Null value) : value_(value) {}
    PropertyList(bool value) : value_(value) {}
    PropertyList(Integer value) : value_(value) {}
    PropertyList(long long value) : value_(Integer::of(value)) {}
    PropertyList(float value) : value_(value) {}
    PropertyList(double value) : value_(value) {}
    PropertyList(Date value) : value_(value) {}
    PropertyList(UID value) : value_(value) {}
    PropertyList(Data value) : value_(std::make_shared<const Data>(std::move(value))) {}
    PropertyList(std::string text) : value_(std::make_shared<const std::string>(std::move(text))) {}
    PropertyList(const char* text) : PropertyList(std::string(text)) {}
    PropertyList(Array value) : value_(std::make_shared<const Array>(std::move(value))) {}
    PropertyList(Set value) : value_(std::make_shared<const Set>(std::move(value))) {}
    PropertyList(Dictionary value);
    template <class T>
    PropertyList(const T*) = delete; // would silently become a bool

    // The contents if their type is T (Null, bool, Integer, float, double, Date, UID, Data,
    // std::string, Array, Set or Dictionary), else null. A scalar (up to UID) lives as long as this
    // value, other contents as long as any copy of it. Equal addresses of Data, std::string and
    // containers mean shared contents.
    template <class T>
    const T* get() const {
        if constexpr (std::is_trivially_copyable_v<T>) {
            return std::get_if<T>(&value_);
        } else {
            const auto* shared = std::get_if<std::shared_ptr<const T>>(&value_);
            return shared ? shared->get() : nullptr;
        }
    }

    // Calls `visitor` with the contents as one of these types and returns its result.
    template <class Visitor>
    auto visit(Visitor&& visitor) const {
        return std::visit(
            [&]<class T>(const T& contents) {
                if constexpr (std::is_trivially_copyable_v<T>)
                    return visitor(contents);
                else
                    return visitor(*contents);
            },
            value_);
    }

    // The value for `key` if this is a dictionary that has one, else null. Lives as long as any
    // copy of the dictionary.
    const PropertyList* find(std::string_view key) const;

  private:
    std::variant<Null, bool, Integer, float, double, Date, UID, std::shared_ptr<const Data>,
                 std::shared_ptr<const std::string>, std::shared_ptr<const Array>,
                 std::shared_ptr<const Set>, std::shared_ptr<const Dictionary>>
        value_;
};

struct PropertyList::Entry {
    PropertyList key; // always text
    PropertyList value;
};

// Reads the binary form, but not XML. Returns std::nullopt if `bytes` is not a whole, well-formed
// list, holds a URL or a UUID, or exceeds the budget, which must be a new one. Time and memory grow
// at most linearly with the size of `bytes`. Values that are referred to from several places stay
// shared. A list that was read and is written again can be read again.
std::optional<PropertyList> readPropertyList(std::string_view bytes, DecodeBudget& budget);
// The same within kPreferencesLimits.
std::optional<PropertyList> readPropertyList(std::string_view bytes);

// The binary form: equal lists give equal bytes. Equal scalars are written once, as are shared
// containers. Bytes of text that are not UTF-8 become U+FFFD. Recursive: `list` must be within the
// depth of kPreferencesLimits.
std::string writePropertyList(const PropertyList& list);

} // namespace tesmar
