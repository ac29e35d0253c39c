// A property list as a tree of values, and its binary form. Every value keeps its type, so that a
// list which somebody else wrote can be read, changed in one place and written back unharmed.
#pragma once

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
    // Nothing, as a value.
    struct Null {};
    // A signed number of 128 bits in two's complement.
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
        double seconds = 0; // since the start of 2001, UTC; may be not finite
    };
    struct Data {
        std::string bytes;
    };
    // A reference by number into the object table of a keyed archive.
    struct UID {
        std::uint64_t value = 0;
    };
    struct Entry;
    using Array = std::vector<PropertyList>;
    struct Set {
        Array elements; // in the written order
    };
    // In the written order. A key may stand there twice; the first one counts.
    using Dictionary = std::vector<Entry>;

    // A float is a real of 32 bits, a double one of 64; either may be not finite. Text is UTF-8,
    // but for one thing: half of a surrogate pair, which a written string may hold, stands there
    // as the three bytes that UTF-8 would give it. isValidUtf8() tells such text.
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
    PropertyList(const T*) = delete; // would silently become a Boolean

    // The value when it is a T (Null, bool, Integer, float, double, Date, UID, Data, std::string,
    // Array, Set or Dictionary), else null. Lives as long as any copy of this value. For the types
    // from Data on, equal addresses mean shared contents.
    template <class T>
    const T* get() const {
        if constexpr (std::is_trivially_copyable_v<T>) {
            return std::get_if<T>(&value_);
        } else {
            const auto* shared = std::get_if<std::shared_ptr<const T>>(&value_);
            return shared ? shared->get() : nullptr;
        }
    }

    // What `visitor` answers for the value as one of these types.
    template <class Visitor>
    auto visit(Visitor&& visitor) const {
        return std::visit(
            [&]<class T>(const T& held) {
                if constexpr (std::is_trivially_copyable_v<T>)
                    return visitor(held);
                else
                    return visitor(*held);
            },
            value_);
    }

    // The value under `key` when this is a dictionary that has it, else null.
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

inline constexpr int kDeepestPropertyList = 512;
// Of a file that others have a part in.
inline constexpr std::size_t kMostPropertyListBytes = 16 << 20;

// What a list that is read may not exceed.
struct PropertyListLimits {
    std::size_t bytes = kMostPropertyListBytes;
    // In the table; references between them; and in the list as a whole, counting each that is
    // shared as often as it is reached, so that going through the list is never a trap.
    std::size_t values = 1 << 20;
};

// Nothing when `bytes` is not a whole, well-formed binary property list within the limits, nested
// no deeper than kDeepestPropertyList, or holds a URL or a UUID; property lists in XML are
// not read. Time and memory grow linearly with the size of `bytes`, whatever they say. Values that
// are referred to from several places stay shared. What is read and written again is read again.
std::optional<PropertyList> readPropertyList(std::string_view bytes,
                                             const PropertyListLimits& limits = {});

// The binary form: the same list always gives the same bytes. Equal scalars are written once, and
// so are containers that are shared. Bytes of text that are not UTF-8 become U+FFFD. `list` must
// not be nested deeper than kDeepestPropertyList.
std::string writePropertyList(const PropertyList& list);

} // namespace tesmar
