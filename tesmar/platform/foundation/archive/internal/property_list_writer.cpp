#include "tesmar/platform/foundation/archive/internal/property_list.h"
#include "tesmar/platform/foundation/archive/internal/property_list_format.h"
#include "tesmar/platform/foundation/archive/internal/utf.h"

#include <algorithm>
#include <bit>
#include <unordered_map>

namespace tesmar {
namespace {

using namespace property_list_format;

void appendNumber(std::string& bytes, std::uint64_t value, std::size_t size) {
    for (std::size_t i = size; i-- > 0;)
        bytes += static_cast<char>(value >> (8 * i));
}

// The narrowest of the widths that every reader knows: 1, 2, 4 or 8 bytes.
std::size_t widthFor(std::uint64_t value) {
    return value < 1u << 8 ? 1 : value < 1u << 16 ? 2 : value < 1ull << 32 ? 4 : 8;
}

std::uint8_t markerFor(Marker kind, std::size_t width) {
    return static_cast<std::uint8_t>(kind | std::countr_zero(width));
}

void appendInteger(std::string& bytes, PropertyList::Integer integer) {
    if (!integer.fitsLongLong()) {
        appendNumber(bytes, markerFor(kInteger, 16), 1);
        appendNumber(bytes, static_cast<std::uint64_t>(integer.high), 8);
        appendNumber(bytes, integer.low, 8);
        return;
    }
    const std::size_t width = widthFor(integer.low); // 8 for negative numbers
    appendNumber(bytes, markerFor(kInteger, width), 1);
    appendNumber(bytes, integer.low, width);
}

void appendCount(std::string& bytes, Marker kind, std::size_t count) {
    if (count < kCountFollows) {
        appendNumber(bytes, kind | count, 1);
    } else {
        appendNumber(bytes, kind | kCountFollows, 1);
        appendInteger(bytes, PropertyList::Integer::of(static_cast<long long>(count)));
    }
}

void appendText(std::string& bytes, const std::string& text) {
    if (std::all_of(text.begin(), text.end(), [](signed char c) { return c >= 0; })) {
        appendCount(bytes, kAscii, text.size());
        bytes += text;
        return;
    }
    const std::u16string units = utf16FromUtf8(text);
    appendCount(bytes, kUtf16, units.size());
    for (const char16_t unit : units)
        appendNumber(bytes, unit, 2);
}

// Appends the object of a scalar.
struct AppendScalar {
    std::string& bytes;

    void operator()(PropertyList::Null) const { appendNumber(bytes, kNull, 1); }
    void operator()(bool value) const { appendNumber(bytes, value ? kTrue : kFalse, 1); }
    void operator()(PropertyList::Integer value) const { appendInteger(bytes, value); }
    void operator()(float value) const {
        appendNumber(bytes, markerFor(kReal, 4), 1);
        appendNumber(bytes, std::bit_cast<std::uint32_t>(value), 4);
    }
    void operator()(double value) const {
        appendNumber(bytes, markerFor(kReal, 8), 1);
        appendNumber(bytes, std::bit_cast<std::uint64_t>(value), 8);
    }
    void operator()(PropertyList::Date value) const {
        appendNumber(bytes, kDate, 1);
        appendNumber(bytes, std::bit_cast<std::uint64_t>(value.seconds), 8);
    }
    void operator()(PropertyList::UID value) const {
        const std::size_t width = widthFor(value.value);
        appendNumber(bytes, kUID | (width - 1), 1);
        appendNumber(bytes, value.value, width);
    }
    void operator()(const PropertyList::Data& value) const {
        appendCount(bytes, kData, value.bytes.size());
        bytes += value.bytes;
    }
    void operator()(const std::string& value) const { appendText(bytes, value); }
    void operator()(const auto&) const {} // never called: containers
};

bool isContainer(const PropertyList& value) {
    return value.get<PropertyList::Array>() || value.get<PropertyList::Set>() ||
           value.get<PropertyList::Dictionary>();
}

// The address of the contents that copies of the value share; null for trivially copied types.
const void* contentsOf(const PropertyList& value) {
    return value.visit([]<class T>(const T& contents) -> const void* {
        if constexpr (std::is_trivially_copyable_v<T>)
            return nullptr;
        else
            return &contents;
    });
}

class Writer {
  public:
    std::string write(const PropertyList& root);

  private:
    // An object of the list: its marker and content, then references to other objects.
    struct Object {
        std::string bytes;
        std::vector<std::size_t> references;
    };

    std::size_t add(const PropertyList& value);
    std::size_t addScalar(const PropertyList& value);
    std::size_t addContainer(const PropertyList& value);

    std::vector<Object> objects_;
    std::unordered_map<std::string, std::size_t> scalars_; // by their bytes
    std::unordered_map<const void*, std::size_t> shared_;  // by contentsOf()
};

std::string Writer::write(const PropertyList& root) {
    const std::size_t top = add(root);
    const std::size_t referenceSize = widthFor(objects_.size());

    std::string bytes(kMagic);
    std::vector<std::size_t> offsets;
    for (const Object& object : objects_) {
        offsets.push_back(bytes.size());
        bytes += object.bytes;
        for (const std::size_t reference : object.references)
            appendNumber(bytes, reference, referenceSize);
    }
    const std::size_t table = bytes.size();
    const std::size_t offsetSize = widthFor(table);
    for (const std::size_t offset : offsets)
        appendNumber(bytes, offset, offsetSize);

    bytes.append(6, '\0');
    appendNumber(bytes, offsetSize, 1);
    appendNumber(bytes, referenceSize, 1);
    appendNumber(bytes, objects_.size(), 8);
    appendNumber(bytes, top, 8);
    appendNumber(bytes, table, 8);
    return bytes;
}

std::size_t Writer::add(const PropertyList& value) {
    // Shared contents are written once, without comparing what may be large.
    const void* contents = contentsOf(value);
    if (const auto known = shared_.find(contents); known != shared_.end())
        return known->second;
    const std::size_t number = isContainer(value) ? addContainer(value) : addScalar(value);
    if (contents)
        shared_.emplace(contents, number);
    return number;
}

std::size_t Writer::addScalar(const PropertyList& value) {
    std::string bytes;
    value.visit(AppendScalar{bytes});
    const auto [entry, isNew] = scalars_.emplace(bytes, objects_.size());
    if (isNew)
        objects_.push_back({std::move(bytes), {}});
    return entry->second;
}

std::size_t Writer::addContainer(const PropertyList& value) {
    const std::size_t number = objects_.size();
    objects_.emplace_back();
    Object container;
    const auto reference = [&](const PropertyList& element) {
        container.references.push_back(add(element));
    };
    if (const auto* dictionary = value.get<PropertyList::Dictionary>()) {
        appendCount(container.bytes, kDictionary, dictionary->size());
        for (const auto& entry : *dictionary)
            reference(entry.key);
        for (const auto& entry : *dictionary)
            reference(entry.value);
    } else {
        const auto* set = value.get<PropertyList::Set>();
        const auto& elements = set ? set->elements : *value.get<PropertyList::Array>();
        appendCount(container.bytes, set ? kSet : kArray, elements.size());
        for (const auto& element : elements)
            reference(element);
    }
    objects_[number] = std::move(container);
    return number;
}

} // namespace

std::string writePropertyList(const PropertyList& list) {
    return Writer().write(list);
}

} // namespace tesmar
