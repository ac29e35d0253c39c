// Objects under string keys. NSDictionary cannot be changed; NSMutableDictionary can.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

class NSMutableDictionary;

class TESMAR_API NSDictionary : public NSObject {
    TESMAR_CLASS

  public:
    using Entries = std::map<std::string, Ref<NSObject>, std::less<>>;

    // Null values are left out.
    static Ref<NSDictionary> dictionaryWithEntries(Entries entries);

    // Null when there is no such key.
    Ref<NSObject> objectForKey(std::string_view key) const;
    std::size_t count() const { return entries_.size(); }
    std::vector<std::string> allKeys() const;
    // In ascending byte order of the keys. Valid until the dictionary changes.
    const Entries& entries() const { return entries_; }

    // A new dictionary with the same keys and the same (shared) value objects.
    Ref<NSMutableDictionary> mutableCopy() const;

    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    // Same keys with equal values; mutability does not count.
    bool isEqual(const NSObject* other) const override;

  protected:
    Entries entries_;
};

class TESMAR_API NSMutableDictionary : public NSDictionary {
    TESMAR_CLASS

  public:
    // Replaces any earlier value. A null object is a fatal error.
    void setObject(const Ref<NSObject>& object, std::string_view forKey);
    // Nothing happens when there is no such key.
    void removeObjectForKey(std::string_view key);
};

} // namespace tesmar
