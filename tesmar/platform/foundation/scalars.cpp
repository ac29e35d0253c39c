#include "tesmar/platform/foundation/scalars.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/archive/internal/utf.h"
#include "tesmar/platform/foundation/runtime.h"

#include <glib.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace tesmar {
namespace {

struct GFree {
    void operator()(char* text) const { g_free(text); }
};
using GText = std::unique_ptr<char, GFree>;

GText composed(std::string_view text) {
    return GText(g_utf8_normalize(text.data(), static_cast<gssize>(text.size()), G_NORMALIZE_NFC));
}

GText folded(std::string_view text) {
    return GText(g_utf8_casefold(text.data(), static_cast<gssize>(text.size())));
}

bool isASCII(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// glib stops at a NUL, and expects valid UTF-8.
bool isAcceptedByGlib(std::string_view text) {
    return text.find('\0') == std::string_view::npos && isValidUtf8(text);
}

} // namespace

bool stringsAreEqual(std::string_view a, std::string_view b) {
    if (a == b)
        return true;
    if (isASCII(a) && isASCII(b)) // composing would not change them
        return false;
    if (!isAcceptedByGlib(a) || !isAcceptedByGlib(b))
        return false;
    return std::string_view(composed(a).get()) == composed(b).get();
}

bool localizedCaseInsensitiveLess(std::string_view a, std::string_view b) {
    if (!isAcceptedByGlib(a) || !isAcceptedByGlib(b))
        return a < b;
    return g_utf8_collate(folded(a).get(), folded(b).get()) < 0;
}

Class& NSString::classObject() {
    static Class& type = *new Class("NSString", &NSObject::classObject(), allocator<NSString>());
    return type;
}

Ref<NSString> NSString::stringWithString(std::string text) {
    auto string = make<NSString>();
    string->text_ = std::move(text);
    return string;
}

bool NSString::initWithCoder(NSCoder& coder) {
    auto text = coder.decodeString("NS.string");
    if (!text)
        text = coder.decodeBytes("NS.bytes");
    if (!text || !isValidUtf8(*text))
        return false;
    text_ = *std::move(text);
    return true;
}

bool NSString::encodeWithCoder(NSCoder& coder) const {
    coder.encodeString(text_, "NS.string");
    return true;
}

bool NSString::isEqual(const NSObject* other) const {
    const auto* string = dynamic_cast<const NSString*>(other);
    return string && stringsAreEqual(text_, string->text_);
}

Class& NSNumber::classObject() {
    static Class& type = *new Class("NSNumber", &NSObject::classObject(), allocator<NSNumber>());
    return type;
}

Ref<NSNumber> NSNumber::numberWith(Number value) {
    auto number = make<NSNumber>();
    number->value_ = value;
    return number;
}

double NSNumber::doubleValue() const {
    return std::visit([](auto value) { return static_cast<double>(value); }, value_);
}

bool NSNumber::initWithCoder(NSCoder& coder) {
    constexpr double kLargest = std::numeric_limits<double>::max();
    if (const auto boolean = coder.decodeBool("NS.boolval"))
        value_ = *boolean;
    else if (const auto integer = coder.decodeInteger("NS.intval"))
        value_ = *integer;
    else if (const auto real = coder.decodeDouble("NS.dblval"))
        value_ = finite(*real, -kLargest, kLargest, 0);
    else
        return false;
    return true;
}

bool NSNumber::encodeWithCoder(NSCoder& coder) const {
    if (const auto* boolean = std::get_if<bool>(&value_))
        coder.encodeBool(*boolean, "NS.boolval");
    else if (const auto* integer = std::get_if<long long>(&value_))
        coder.encodeInteger(*integer, "NS.intval");
    else
        coder.encodeDouble(std::get<double>(value_), "NS.dblval");
    return true;
}

bool NSNumber::isEqual(const NSObject* other) const {
    const auto* number = dynamic_cast<const NSNumber*>(other);
    if (!number)
        return false;
    // Compare integers as integers: a double does not hold all of them.
    return std::visit(
        []<class A, class B>(A a, B b) {
            using Both = std::conditional_t<std::is_same_v<A, double> || std::is_same_v<B, double>,
                                            double, long long>;
            return static_cast<Both>(a) == static_cast<Both>(b);
        },
        value_, number->value_);
}

Class& NSData::classObject() {
    static Class& type = *new Class("NSData", &NSObject::classObject(), allocator<NSData>());
    return type;
}

Ref<NSData> NSData::dataWithBytes(std::string bytes) {
    auto data = make<NSData>();
    data->bytes_ = std::move(bytes);
    return data;
}

bool NSData::initWithCoder(NSCoder& coder) {
    const auto bytes = coder.decodeBytes("NS.data");
    bytes_ = bytes.value_or("");
    return bytes.has_value();
}

bool NSData::encodeWithCoder(NSCoder& coder) const {
    coder.encodeBytes(bytes_, "NS.data");
    return true;
}

bool NSData::isEqual(const NSObject* other) const {
    const auto* data = dynamic_cast<const NSData*>(other);
    return data && bytes_ == data->bytes_;
}

} // namespace tesmar
