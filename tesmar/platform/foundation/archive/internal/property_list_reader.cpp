#include "tesmar/platform/foundation/archive/internal/property_list.h"
#include "tesmar/platform/foundation/archive/internal/property_list_format.h"
#include "tesmar/platform/foundation/archive/internal/utf.h"

#include <algorithm>
#include <bit>
#include <deque>

namespace tesmar {
namespace {

using namespace property_list_format;

// Decodes a big-endian number of at most 8 bytes.
std::uint64_t number(std::string_view bytes) {
    std::uint64_t result = 0;
    for (const char byte : bytes)
        result = result << 8 | static_cast<std::uint8_t>(byte);
    return result;
}

// Recursive, from the root down. The budget grants as many bytes as the input has, so objects that
// overlap in the input fail.
class Reader {
  public:
    Reader(std::string_view bytes, DecodeBudget& budget) : bytes_(bytes), budget_(budget) {}

    std::optional<PropertyList> read();

  private:
    struct Object {
        PropertyList value = PropertyList::Null();
        DecodeBudget::Cost cost;
    };
    struct Cursor {
        std::uint64_t at;
        bool isCharged; // for the first reading of an object only
    };
    // What is known of an object: one of these, or its index in kept_. Scalars are not kept but
    // read again at each reference: a list of numbers is mostly table otherwise.
    using Known = std::uint32_t;
    static constexpr Known kUnread = 0xFFFF'FFFF;
    static constexpr Known kOpen = kUnread - 1;
    static constexpr Known kIsScalar = kUnread - 2;

    using Bytes = std::optional<std::string_view>;

    bool readTrailer();
    bool read(std::uint64_t number, PropertyList& value);
    bool readAnew(std::uint64_t number, PropertyList& value);
    static bool set(Object& object, PropertyList value) {
        object.value = std::move(value);
        return true;
    }
    bool parse(std::uint64_t number, Object& object);
    bool parseScalar(Object& object, std::uint8_t marker, Cursor& cursor);
    bool parseInteger(Object& object, std::string_view digits);
    bool parseText(Object& object, std::uint8_t kind, std::uint64_t count, Cursor& cursor);
    bool parseContainer(Object& object, std::uint8_t kind, std::uint64_t count, Cursor& cursor);
    bool parseElements(std::string_view references, PropertyList::Array& elements);
    std::optional<std::uint64_t> count(std::uint8_t marker, Cursor& cursor);
    Bytes take(Cursor& cursor, std::uint64_t size);

    std::string_view bytes_;
    DecodeBudget& budget_;
    std::uint64_t root_ = 0;
    std::uint64_t tableStart_ = 0;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::vector<Known> known_; // by object
    std::deque<Object> kept_;  // text, data and containers, which stay shared
};

std::optional<PropertyList> Reader::read() {
    if (!readTrailer())
        return std::nullopt;
    PropertyList root = PropertyList::Null();
    return read(root_, root) ? std::optional(std::move(root)) : std::nullopt;
}

bool Reader::readTrailer() {
    if (!budget_.startPass(bytes_.size()) || bytes_.size() < kMagic.size() + kTrailerSize ||
        bytes_.substr(0, kMagic.size()) != kMagic)
        return false;
    const std::uint64_t tableEnd = bytes_.size() - kTrailerSize;
    const std::string_view trailer = bytes_.substr(tableEnd);
    offsetSize_ = static_cast<std::uint8_t>(trailer[6]);
    referenceSize_ = static_cast<std::uint8_t>(trailer[7]);
    const std::uint64_t count = number(trailer.substr(8, 8));
    root_ = number(trailer.substr(16, 8));
    tableStart_ = number(trailer.substr(24, 8));
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8 ||
        tableStart_ < kMagic.size() || tableStart_ > tableEnd || count == 0 ||
        !budget_.hasValues(count) || count > (tableEnd - tableStart_) / offsetSize_)
        return false;
    known_.assign(count, kUnread);
    return true;
}

// False when the object cannot be read, contains itself or is beyond the budget.
bool Reader::read(std::uint64_t n, PropertyList& value) {
    if (n >= known_.size() || known_[n] == kOpen)
        return false;
    if (known_[n] == kUnread || known_[n] == kIsScalar)
        return readAnew(n, value);
    const Object& kept = kept_[known_[n]];
    value = kept.value;
    return budget_.spend(kept.cost);
}

bool Reader::readAnew(std::uint64_t n, PropertyList& value) {
    Object object;
    if (!parse(n, object))
        return false;
    value = object.value;
    const auto cost = object.cost;
    if (known_[n] != kIsScalar) {
        known_[n] = static_cast<Known>(kept_.size());
        kept_.push_back(std::move(object));
    }
    return budget_.spend(cost);
}

// Leaves it open, or a scalar.
bool Reader::parse(std::uint64_t n, Object& object) {
    Cursor cursor{number(bytes_.substr(tableStart_ + n * offsetSize_, offsetSize_)),
                  known_[n] == kUnread};
    known_[n] = kOpen;
    const Bytes first = cursor.at < kMagic.size() ? std::nullopt : take(cursor, 1);
    if (!first)
        return false;
    const auto marker = static_cast<std::uint8_t>(first->front());
    const auto kind = static_cast<std::uint8_t>(marker & 0xF0);
    switch (kind) {
    case kData:
    case kAscii:
    case kUtf16:
        if (const auto size = count(marker, cursor))
            return parseText(object, kind, *size, cursor);
        return false;
    case kArray:
    case kSet:
    case kDictionary:
        if (const auto size = count(marker, cursor))
            return parseContainer(object, kind, *size, cursor);
        return false;
    default:
        known_[n] = kIsScalar;
        return parseScalar(object, marker, cursor);
    }
}

bool Reader::parseScalar(Object& object, std::uint8_t marker, Cursor& cursor) {
    switch (marker) {
    case kNull:
        return set(object, PropertyList::Null());
    case kFalse:
    case kTrue:
        return set(object, marker == kTrue);
    }
    const unsigned low = marker & 0x0F;
    switch (marker & 0xF0) {
    case kInteger:
        if (const Bytes digits = low <= 4 ? take(cursor, 1u << low) : std::nullopt)
            return parseInteger(object, *digits);
        return false;
    case kReal:
        if (low == 2) {
            if (const Bytes bits = take(cursor, 4))
                return set(object, std::bit_cast<float>(std::uint32_t(number(*bits))));
        } else if (low == 3) {
            if (const Bytes bits = take(cursor, 8))
                return set(object, std::bit_cast<double>(number(*bits)));
        }
        return false;
    case kDate & 0xF0:
        if (const Bytes bits = marker == kDate ? take(cursor, 8) : std::nullopt)
            return set(object, PropertyList::Date{std::bit_cast<double>(number(*bits))});
        return false;
    case kUID:
        if (const Bytes bits = low < 8 ? take(cursor, low + 1) : std::nullopt)
            return set(object, PropertyList::UID{number(*bits)});
        return false;
    default:
        return false;
    }
}

bool Reader::parseInteger(Object& object, std::string_view digits) {
    PropertyList::Integer integer;
    if (digits.size() == 16) {
        integer.high = static_cast<std::int64_t>(number(digits.substr(0, 8)));
        integer.low = number(digits.substr(8));
    } else {
        integer.low = number(digits);
        if (digits.size() == 8)
            integer = PropertyList::Integer::of(static_cast<long long>(integer.low));
    }
    return set(object, integer);
}

bool Reader::parseText(Object& object, std::uint8_t kind, std::uint64_t count, Cursor& cursor) {
    const Bytes bytes = take(cursor, kind == kUtf16 ? 2 * count : count);
    if (!bytes)
        return false;
    if (kind == kData)
        return set(object, PropertyList::Data{std::string(*bytes)});
    if (kind == kAscii) {
        if (std::any_of(bytes->begin(), bytes->end(), [](signed char c) { return c < 0; }))
            return false;
        return set(object, std::string(*bytes));
    }
    std::u16string units;
    units.reserve(count);
    for (std::size_t i = 0; i < bytes->size(); i += 2)
        units += static_cast<char16_t>(number(bytes->substr(i, 2)));
    return set(object, utf8FromUtf16(units));
}

bool Reader::parseContainer(Object& object, std::uint8_t kind, std::uint64_t count,
                            Cursor& cursor) {
    const std::uint64_t size = kind == kDictionary ? 2 * count : count;
    const Bytes references = take(cursor, size * referenceSize_);
    if (!references || !budget_.hasValues(size))
        return false;

    PropertyList::Array elements;
    bool isRead = false;
    object.cost = budget_.measure([&] { isRead = parseElements(*references, elements); });
    if (!isRead)
        return false;
    if (kind == kArray)
        return set(object, std::move(elements));
    if (kind == kSet)
        return set(object, PropertyList::Set{std::move(elements)});
    PropertyList::Dictionary entries;
    entries.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (!elements[i].get<std::string>())
            return false;
        entries.push_back({elements[i], std::move(elements[count + i])});
    }
    return set(object, std::move(entries));
}

bool Reader::parseElements(std::string_view references, PropertyList::Array& elements) {
    elements.reserve(references.size() / referenceSize_);
    for (; !references.empty(); references.remove_prefix(referenceSize_)) {
        elements.emplace_back(PropertyList::Null());
        if (!read(number(references.substr(0, referenceSize_)), elements.back()))
            return false;
    }
    return true;
}

// At most 2^32, so products with any element size do not overflow.
std::optional<std::uint64_t> Reader::count(std::uint8_t marker, Cursor& cursor) {
    const std::uint8_t low = marker & 0x0F;
    if (low != kCountFollows)
        return low;
    const Bytes width = take(cursor, 1);
    if (!width || (width->front() & 0xFC) != kInteger)
        return std::nullopt;
    const Bytes digits = take(cursor, 1u << (width->front() & 0x03));
    if (!digits || number(*digits) >> 32 != 0)
        return std::nullopt;
    return number(*digits);
}

Reader::Bytes Reader::take(Cursor& cursor, std::uint64_t size) {
    if (cursor.at > tableStart_ || size > tableStart_ - cursor.at ||
        (cursor.isCharged && !budget_.spendBytes(size)))
        return std::nullopt;
    const std::string_view taken = bytes_.substr(cursor.at, size);
    cursor.at += size;
    return taken;
}

} // namespace

std::optional<PropertyList> readPropertyList(std::string_view bytes, DecodeBudget& budget) {
    return Reader(bytes, budget).read();
}

std::optional<PropertyList> readPropertyList(std::string_view bytes) {
    DecodeBudget budget(kPreferencesLimits);
    return readPropertyList(bytes, budget);
}

} // namespace tesmar
