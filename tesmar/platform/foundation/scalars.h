// Text, numbers and bytes as objects, for the places that hold any object: dictionaries, lists and
// archives. Everywhere else the plain C++ types serve. All are immutable.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <string>
#include <string_view>
#include <variant>

namespace tesmar {

class TESMAR_API NSString : public NSObject {
    TESMAR_CLASS

  public:
    // UTF-8.
    static Ref<NSString> stringWithString(std::string text);
    const std::string& text() const { return text_; }

    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    // Canonically equivalent texts are equal.
    bool isEqual(const NSObject* other) const override;

  private:
    std::string text_;
};

class TESMAR_API NSNumber : public NSObject {
    TESMAR_CLASS

  public:
    using Number = std::variant<bool, long long, double>;

    static Ref<NSNumber> numberWith(Number value);
    const Number& value() const { return value_; }
    double doubleValue() const;

    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    // By numeric value, whatever the types.
    bool isEqual(const NSObject* other) const override;

  private:
    Number value_;
};

class TESMAR_API NSData : public NSObject {
    TESMAR_CLASS

  public:
    // Any bytes, zeros included.
    static Ref<NSData> dataWithBytes(std::string bytes);
    const std::string& bytes() const { return bytes_; }

    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    bool isEqual(const NSObject* other) const override;

  private:
    std::string bytes_;
};

// Equality of text up to canonical equivalence: an accented letter equals the letter followed by
// its combining accent. Case and spaces count. Texts that are not valid UTF-8 compare byte by byte.
TESMAR_API bool stringsAreEqual(std::string_view a, std::string_view b);

// Whether `a` stands before `b` in the current locale's case-insensitive order (LC_COLLATE as the
// host set it).
TESMAR_API bool localizedCaseInsensitiveLess(std::string_view a, std::string_view b);

} // namespace tesmar
