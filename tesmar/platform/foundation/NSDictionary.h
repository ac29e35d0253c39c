// Objects under string keys. Only NSMutableDictionary can be changed. Values are never null.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <map>
#include <string>
#include <string_view>

namespace tesmar {

class NSMutableDictionary;

class TESMAR_API NSDictionary : public NSObject {
    TESMAR_CLASS

  public:
    using Entries = std::map<std::string, Ref<NSObject>, std::less<>>;

    // Null values are dropped.
    static Ref<NSDictionary> dictionaryWithEntries(Entries entries);

    // Null if there is no such key.
    Ref<NSObject> objectForKey(std::string_view key) const;
    // In ascending byte order of the keys. Valid while the dictionary exists unchanged.
    const Entries& entries() const { return entries_; }

    // A new dictionary with the same keys, which shares the value objects.
    Ref<NSMutableDictionary> mutableCopy() const;

    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    // Same keys with equal values, whether mutable or not.
    // Collections that hold themselves can be compared; deeper than 1,000 levels they are unequal.
    bool isEqual(const NSObject* other) const override;

  protected:
    Entries entries_;
};

class TESMAR_API NSMutableDictionary : public NSDictionary {
    TESMAR_CLASS

  public:
    ~NSMutableDictionary() override;

    // Replaces any earlier value. A null object is a fatal error.
    void setObject(const Ref<NSObject>& object, std::string_view forKey);
    // No effect if there is no such key.
    void removeObjectForKey(std::string_view key);
};

} // namespace tesmar
