#include "tesmar/platform/foundation/NSDictionary.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/internal/comparison.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"

#include <algorithm>

namespace tesmar {

Class& NSDictionary::classObject() {
    static Class& type =
        *new Class("NSDictionary", &NSObject::classObject(), allocator<NSDictionary>());
    return type;
}

Class& NSMutableDictionary::classObject() {
    static Class& type = *new Class("NSMutableDictionary", &NSDictionary::classObject(),
                                    allocator<NSMutableDictionary>());
    return type;
}

Ref<NSDictionary> NSDictionary::dictionaryWithEntries(Entries entries) {
    auto dictionary = make<NSDictionary>();
    std::erase_if(entries, [](const auto& entry) { return !entry.second; });
    dictionary->entries_ = std::move(entries);
    return dictionary;
}

Ref<NSObject> NSDictionary::objectForKey(std::string_view key) const {
    const auto found = entries_.find(key);
    return found == entries_.end() ? nullptr : found->second;
}

Ref<NSMutableDictionary> NSDictionary::mutableCopy() const {
    auto copy = make<NSMutableDictionary>();
    copy->entries_ = entries_;
    return copy;
}

bool NSDictionary::initWithCoder(NSCoder& coder) {
    auto keys = coder.decodeStrings("NS.keys");
    const auto values = coder.decodeObjects("NS.objects");
    if (coder.failed() || keys.size() != values.size())
        return false;
    for (std::size_t i = 0; i < keys.size(); ++i)
        entries_[std::move(keys[i])] = values[i];
    return true;
}

bool NSDictionary::encodeWithCoder(NSCoder& coder) const {
    std::vector<Ref<NSObject>> keys, values;
    for (const auto& [key, value] : entries_) {
        auto name = NSString::stringWithString(key);
        if (!coder.canEncodeObject(name) || !coder.canEncodeObject(value))
            continue;
        keys.push_back(std::move(name));
        values.push_back(value);
    }
    coder.encodeObjects(keys, "NS.keys");
    coder.encodeObjects(values, "NS.objects");
    return true;
}

bool NSDictionary::isEqual(const NSObject* other) const {
    const auto* dictionary = dynamic_cast<const NSDictionary*>(other);
    const auto isSame = [](const auto& a, const auto& b) {
        return a.first == b.first && a.second->isEqual(b.second.get());
    };
    return dictionary && compareCollections(*this, *dictionary, [&] {
               return std::equal(entries_.begin(), entries_.end(), dictionary->entries_.begin(),
                                 dictionary->entries_.end(), isSame);
           });
}

NSMutableDictionary::~NSMutableDictionary() = default;

void NSMutableDictionary::setObject(const Ref<NSObject>& object, std::string_view forKey) {
    if (!object)
        fatalError("NSMutableDictionary: object for key \"" + std::string(forKey) + "\" is null");
    // The old value is released last: its destructor may use this dictionary.
    auto entry = entries_.find(forKey);
    if (entry == entries_.end()) {
        entries_.emplace(forKey, object);
        return;
    }
    const auto replaced = std::exchange(entry->second, Ref<NSObject>(object));
}

void NSMutableDictionary::removeObjectForKey(std::string_view key) {
    if (const auto found = entries_.find(key); found != entries_.end()) {
        const auto removed = std::move(found->second);
        entries_.erase(found);
    }
}

} // namespace tesmar
