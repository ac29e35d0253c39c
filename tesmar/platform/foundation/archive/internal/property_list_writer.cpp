#include "tesmar/platform/foundation/archive/internal/property_list.h"
#include "tesmar/platform/foundation/archive/internal/property_list_format.h"
#include "tesmar/platform/foundation/archive/internal/utf.h"

#include <algorithm>
#include <bit>
#include <unordered_map>
#include <utility>

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

// The objects of a list by number, all in a few arrays: a list of short texts has one for each of
// a few bytes.
class ObjectTable {
  public:
    std::size_t size() const { return ends_.size(); }
    // Makes an object of what was appended to `bodies` and `references` since the last one.
    void end() { ends_.push_back({bodies.size(), references.size()}); }
    std::string_view body(std::size_t number) const {
        const std::size_t start = number == 0 ? 0 : ends_[number - 1].body;
        return std::string_view(bodies).substr(start, ends_[number].body - start);
    }
    std::string file(std::size_t root) const;

    std::string bodies;                  // of all objects, without their references
    std::vector<std::size_t> references; // of all objects

  private:
    struct End {
        std::size_t body, references;
    };
    std::vector<End> ends_;
};

std::string ObjectTable::file(std::size_t root) const {
    const std::size_t referenceSize = widthFor(size());
    const std::size_t table = kMagic.size() + bodies.size() + references.size() * referenceSize;
    const std::size_t offsetSize = widthFor(table);

    std::string bytes;
    bytes.reserve(table + size() * offsetSize + kTrailerSize);
    bytes = kMagic;
    std::size_t reference = 0;
    for (std::size_t n = 0; n < size(); ++n) {
        bytes += body(n);
        for (; reference < ends_[n].references; ++reference)
            appendNumber(bytes, references[reference], referenceSize);
    }
    std::size_t offset = kMagic.size();
    for (std::size_t n = 0; n < size(); ++n) {
        appendNumber(bytes, offset, offsetSize);
        offset = kMagic.size() + ends_[n].body + ends_[n].references * referenceSize;
    }
    bytes.append(6, '\0');
    appendNumber(bytes, offsetSize, 1);
    appendNumber(bytes, referenceSize, 1);
    appendNumber(bytes, size(), 8);
    appendNumber(bytes, root, 8);
    appendNumber(bytes, table, 8);
    return bytes;
}

class Writer {
  public:
    std::string write(const PropertyList& root) { return table_.file(add(root)); }

  private:
    std::size_t add(const PropertyList& value);
    std::size_t addScalar(const PropertyList& value);
    std::size_t addContainer(const PropertyList& value);
    std::uint32_t& slotOf(std::string_view body);
    void growScalars();

    ObjectTable table_;
    // An open hash table of the scalars by their bodies: numbers plus one, 0 where it is free, at
    // least half of it. A node for each would cost more than most scalars.
    std::vector<std::uint32_t> scalars_ = std::vector<std::uint32_t>(64);
    std::size_t scalarCount_ = 0;
    std::unordered_map<const void*, std::size_t> shared_; // by contentsOf()
};

// Shared contents are written once, without comparing what may be large. Short ones are compared.
bool isWorthKeeping(const PropertyList& value) {
    constexpr std::size_t kShort = 64;
    if (const auto* text = value.get<std::string>())
        return text->size() > kShort;
    if (const auto* data = value.get<PropertyList::Data>())
        return data->bytes.size() > kShort;
    return isContainer(value);
}

std::size_t Writer::add(const PropertyList& value) {
    const void* const contents = isWorthKeeping(value) ? contentsOf(value) : nullptr;
    if (contents)
        if (const auto known = shared_.find(contents); known != shared_.end())
            return known->second;
    const std::size_t number = isContainer(value) ? addContainer(value) : addScalar(value);
    if (contents)
        shared_.emplace(contents, number);
    return number;
}

// Where the number of an equal scalar is, or where it belongs.
std::uint32_t& Writer::slotOf(std::string_view body) {
    const std::size_t mask = scalars_.size() - 1;
    std::size_t at = std::hash<std::string_view>()(body) & mask;
    while (scalars_[at] != 0 && table_.body(scalars_[at] - 1) != body)
        at = (at + 1) & mask;
    return scalars_[at];
}

void Writer::growScalars() {
    const auto previous = std::exchange(scalars_, std::vector<std::uint32_t>(2 * scalars_.size()));
    for (const std::uint32_t entry : previous)
        if (entry != 0)
            slotOf(table_.body(entry - 1)) = entry;
}

std::size_t Writer::addScalar(const PropertyList& value) {
    if (2 * (scalarCount_ + 1) > scalars_.size())
        growScalars();
    const std::size_t start = table_.bodies.size();
    value.visit(AppendScalar{table_.bodies});
    std::uint32_t& slot = slotOf(std::string_view(table_.bodies).substr(start));
    if (slot != 0) {
        table_.bodies.resize(start);
        return slot - 1;
    }
    table_.end();
    ++scalarCount_;
    slot = static_cast<std::uint32_t>(table_.size());
    return slot - 1;
}

std::size_t Writer::addContainer(const PropertyList& value) {
    const std::size_t number = table_.size();
    std::size_t next = table_.references.size();
    const auto start = [&](Marker kind, std::size_t count, std::size_t references) {
        appendCount(table_.bodies, kind, count);
        table_.references.resize(next + references);
        table_.end();
    };
    const auto reference = [&](const PropertyList& element) {
        const std::size_t added = add(element); // may move the references
        table_.references[next++] = added;
    };
    const auto list = [&](Marker kind, const PropertyList::Array& elements) {
        start(kind, elements.size(), elements.size());
        for (const auto& element : elements)
            reference(element);
    };
    if (const auto* dictionary = value.get<PropertyList::Dictionary>()) {
        start(kDictionary, dictionary->size(), 2 * dictionary->size());
        for (const auto& entry : *dictionary)
            reference(entry.key);
        for (const auto& entry : *dictionary)
            reference(entry.value);
    } else if (const auto* set = value.get<PropertyList::Set>()) {
        list(kSet, set->elements);
    } else if (const auto* array = value.get<PropertyList::Array>()) {
        list(kArray, *array);
    }
    return number;
}

} // namespace

std::string writePropertyList(const PropertyList& list) {
    return Writer().write(list);
}

} // namespace tesmar
