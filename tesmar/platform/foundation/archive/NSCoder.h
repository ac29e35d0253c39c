// What objects are read from and written to, value by value under keys. There are two sources: a
// keyed archive and an interface file. Only a keyed archiver is written to.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

// A coder is either read from or written to. Writing to one that is only read from is a fatal
// error; reading answers nothing where a source has no values of that type.
class TESMAR_API NSCoder : public NSObject {
  public:
    // Reading. A key that is missing, or that holds another type, answers nothing (nullopt, null,
    // an empty list). Numbers convert into one another, and may come back not finite: whoever reads
    // one makes it finite.
    virtual std::optional<bool> decodeBool(std::string_view /*key*/) { return {}; }
    virtual std::optional<long long> decodeInteger(std::string_view /*key*/) { return {}; }
    virtual std::optional<double> decodeDouble(std::string_view /*key*/) { return {}; }
    // Always valid UTF-8.
    virtual std::optional<std::string> decodeString(std::string_view /*key*/) { return {}; }
    virtual std::optional<std::string> decodeBytes(std::string_view /*key*/) { return {}; }
    virtual std::optional<CGRect> decodeRect(std::string_view /*key*/) { return {}; }
    virtual Ref<NSObject> decodeObject(std::string_view /*key*/) { return {}; }
    // Elements that do not decode are left out, and failed() tells.
    virtual std::vector<Ref<NSObject>> decodeObjects(std::string_view /*key*/) { return {}; }
    // The same for a list of text.
    virtual std::vector<std::string> decodeStrings(std::string_view /*key*/) { return {}; }
    // Whether anything met so far could not be decoded at all.
    virtual bool failed() const { return false; }

    // Writing.
    virtual void encodeBool(bool value, std::string_view key);
    virtual void encodeInteger(long long value, std::string_view key);
    virtual void encodeDouble(double value, std::string_view key);
    virtual void encodeString(std::string_view value, std::string_view key);
    virtual void encodeBytes(std::string_view value, std::string_view key);
    // An object without a coding is left out.
    virtual void encodeObject(const Ref<NSObject>& object, std::string_view key);
    virtual void encodeObjects(const std::vector<Ref<NSObject>>& objects, std::string_view key);
    // Whether encodeObject and encodeObjects take the object: for lists that must stay in step.
    virtual bool canEncodeObject(const Ref<NSObject>& object);
};

} // namespace tesmar
