// The interface through which objects read and write their values under keys. Objects are read from
// keyed archives and from interface files, and written to keyed archives only.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

// A coder is for reading or for writing. Writing to a reading coder is a fatal error; reading from
// a writing coder returns nothing. Valid only during initWithCoder() or encodeWithCoder().
class TESMAR_API NSCoder : public NSObject {
  public:
    // Reading. Each function returns nothing (nullopt, null, an empty list) if the key is missing,
    // its value has another type, or the source has no values of that type. Numbers convert into
    // each other. A double may be NaN or infinite; the caller makes it finite.
    virtual std::optional<bool> decodeBool(std::string_view /*key*/) { return {}; }
    virtual std::optional<long long> decodeInteger(std::string_view /*key*/) { return {}; }
    virtual std::optional<double> decodeDouble(std::string_view /*key*/) { return {}; }
    // Always valid UTF-8.
    virtual std::optional<std::string> decodeString(std::string_view /*key*/) { return {}; }
    virtual std::optional<std::string> decodeBytes(std::string_view /*key*/) { return {}; }
    virtual std::optional<CGRect> decodeRect(std::string_view /*key*/) { return {}; }
    virtual Ref<NSObject> decodeObject(std::string_view /*key*/) { return {}; }
    // Elements that cannot be decoded are dropped, and failed() is true from then on.
    virtual std::vector<Ref<NSObject>> decodeObjects(std::string_view /*key*/) { return {}; }
    // The same for a list of strings.
    virtual std::vector<std::string> decodeStrings(std::string_view /*key*/) { return {}; }
    // Whether any object so far could not be decoded; the caller must then discard the result.
    virtual bool failed() const { return false; }

    // Writing.
    virtual void encodeBool(bool value, std::string_view key);
    virtual void encodeInteger(long long value, std::string_view key);
    virtual void encodeDouble(double value, std::string_view key);
    virtual void encodeString(std::string_view value, std::string_view key);
    virtual void encodeBytes(std::string_view value, std::string_view key);
    // An object without a coding (see NSObject::encodeWithCoder) is dropped with its key.
    virtual void encodeObject(const Ref<NSObject>& object, std::string_view key);
    // Elements without a coding are dropped.
    virtual void encodeObjects(const std::vector<Ref<NSObject>>& objects, std::string_view key);
    // Whether encodeObject and encodeObjects write the object. Lets parallel lists of keys and
    // values drop the same elements.
    virtual bool canEncodeObject(const Ref<NSObject>& object);
};

} // namespace tesmar
