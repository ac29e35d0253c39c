// Text, numbers and bytes as objects, for containers that hold any object: dictionaries, lists and
// archives. Other interfaces take the plain C++ types. All are immutable.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <string>
#include <string_view>
#include <variant>

namespace tesmar {

class TESMAR_API NSString : public NSObject {
    TESMAR_CLASS

  public:
    // `text` is UTF-8.
    static Ref<NSString> stringWithString(std::string text);
    const std::string& text() const { return text_; }

    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    // See stringsAreEqual.
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
    // By numeric value: a Boolean, an integer and a real number may be equal.
    bool isEqual(const NSObject* other) const override;

  private:
    Number value_;
};

class TESMAR_API NSData : public NSObject {
    TESMAR_CLASS

  public:
    // Any bytes, including NUL.
    static Ref<NSData> dataWithBytes(std::string bytes);
    const std::string& bytes() const { return bytes_; }

    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    bool isEqual(const NSObject* other) const override;

  private:
    std::string bytes_;
};

// Equality up to Unicode canonical equivalence: an accented letter equals the letter followed by a
// combining accent. Case and spaces are significant. A text that is not valid UTF-8, or contains a
// NUL, is compared byte by byte.
TESMAR_API bool stringsAreEqual(std::string_view a, std::string_view b);

// Whether `a` sorts before `b` in the case-insensitive order of the current locale (the host's
// LC_COLLATE). A text that is not valid UTF-8, or contains a NUL, is compared byte by byte.
TESMAR_API bool localizedCaseInsensitiveLess(std::string_view a, std::string_view b);

} // namespace tesmar
