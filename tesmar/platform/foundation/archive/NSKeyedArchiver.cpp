#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/archive/internal/keyed_archive_format.h"
#include "tesmar/platform/foundation/archive/internal/property_list_objects.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"

#include <map>
#include <unordered_map>

namespace tesmar {
namespace {

using namespace keyed_archive_format;

class Archiver final : public NSCoder {
  public:
    Archiver() { budget_.startPass(kMostObjectBytes); }

    std::string archive(const Ref<NSObject>& root);

    void encodeBool(bool value, std::string_view key) override { set(key, value); }
    void encodeInteger(long long value, std::string_view key) override { set(key, value); }
    void encodeDouble(double value, std::string_view key) override { set(key, value); }
    void encodeString(std::string_view value, std::string_view key) override {
        budget_.spendBytes(scalarCost(value.size()));
        set(key, std::string(value));
    }
    void encodeBytes(std::string_view value, std::string_view key) override {
        budget_.spendBytes(scalarCost(value.size()));
        set(key, PropertyList::Data{std::string(value)});
    }
    void encodeObject(const Ref<NSObject>& object, std::string_view key) override {
        if (const auto uid = spendReference(object))
            set(key, *uid);
    }
    void encodeObjects(const std::vector<Ref<NSObject>>& objects, std::string_view key) override;
    bool canEncodeObject(const Ref<NSObject>& object) override { return known(object) != nullptr; }

  private:
    using UID = PropertyList::UID;
    struct Known {
        Ref<NSObject> object; // owned, or a new object could get its address
        std::optional<UID> uid = {};
        DecodeBudget::Cost cost = {};
    };

    // The object in the table, encoded now if it is new. Null for an object that has no coding, is
    // still being encoded or is too deep, and once the budget is exhausted.
    const Known* known(const Ref<NSObject>& object);
    // Its place in the table for one more reference to it.
    std::optional<UID> spendReference(const Ref<NSObject>& object);
    std::optional<UID> encode(const NSObject& object);
    std::optional<PropertyList> scalar(const NSObject& object);
    std::optional<PropertyList> record(const NSObject& object);
    UID classReference(const Class& type);
    UID place(PropertyList value);

    void set(std::string_view key, PropertyList value) {
        record_->push_back({std::string(key), std::move(value)});
    }

    PropertyList::Array objects_{kNull};
    std::unordered_map<const NSObject*, Known> known_;
    std::map<std::string_view, UID> classes_;
    PropertyList::Dictionary* record_ = nullptr; // of the object being encoded
    DecodeBudget budget_{kArchiveLimits};
};

std::string Archiver::archive(const Ref<NSObject>& root) {
    const UID top = spendReference(root).value_or(kNullUID);
    if (budget_.isExhausted()) {
        diagnostic("NSKeyedArchiver: the " + std::string(root->isa().name()) +
                   " is too large to be archived");
        return {};
    }
    return writePropertyList(PropertyList::Dictionary{
        {kVersionKey, kVersion},
        {kArchiverKey, kArchiverName},
        {kTopKey, PropertyList::Dictionary{{kRootKey, top}}},
        {kObjectsKey, std::move(objects_)},
    });
}

void Archiver::encodeObjects(const std::vector<Ref<NSObject>>& objects, std::string_view key) {
    PropertyList::Array references;
    for (const auto& object : objects)
        if (const auto uid = spendReference(object))
            references.push_back(*uid);
    budget_.spendBytes(listCost(references.size()));
    set(key, std::move(references));
}

const Archiver::Known* Archiver::known(const Ref<NSObject>& object) {
    if (!object || !budget_.hasLevels(1) || budget_.isExhausted())
        return nullptr;
    const auto [found, isNew] = known_.try_emplace(object.get(), Known{object});
    Known& entry = found->second; // references stay valid while others are added
    if (isNew)
        entry.cost = budget_.measure([&] { entry.uid = encode(*object); });
    return entry.uid && budget_.hasLevels(entry.cost.depth) ? &entry : nullptr;
}

std::optional<PropertyList::UID> Archiver::spendReference(const Ref<NSObject>& object) {
    const Known* entry = known(object);
    return entry && budget_.spend(entry->cost) ? entry->uid : std::nullopt;
}

std::optional<PropertyList::UID> Archiver::encode(const NSObject& object) {
    if (dynamic_cast<const NSString*>(&object) || dynamic_cast<const NSNumber*>(&object)) {
        auto value = scalar(object);
        return value ? std::optional(place(*std::move(value))) : std::nullopt;
    }
    // Takes its place in the table before the objects that it refers to.
    const UID uid = place(kNull);
    if (auto value = record(object)) {
        objects_[uid.value] = *std::move(value);
        return uid;
    }
    if (objects_.size() == uid.value + 1)
        objects_.pop_back();
    return std::nullopt;
}

std::optional<PropertyList> Archiver::scalar(const NSObject& object) {
    const auto* string = dynamic_cast<const NSString*>(&object);
    const bool fits = budget_.spendBytes(scalarCost(string ? string->text().size() : 0));
    return fits ? propertyListFromObject(object) : std::nullopt;
}

std::optional<PropertyList> Archiver::record(const NSObject& object) {
    PropertyList::Dictionary record;
    auto* const outer = std::exchange(record_, &record);
    const bool hasCoding = object.encodeWithCoder(*this);
    record_ = outer;
    if (!hasCoding)
        return std::nullopt;
    record.push_back({kClassKey, classReference(object.isa())});
    budget_.spendBytes(recordCost(record.size()));
    return record;
}

PropertyList::UID Archiver::classReference(const Class& type) {
    const auto known = classes_.find(type.name());
    if (known != classes_.end())
        return known->second;
    PropertyList::Array chain;
    for (const Class* ancestor = &type; ancestor; ancestor = ancestor->superclass())
        chain.push_back(std::string(ancestor->name()));
    const UID uid = place(PropertyList::Dictionary{{kClassChainKey, std::move(chain)},
                                                   {kClassNameKey, std::string(type.name())}});
    classes_.emplace(type.name(), uid);
    return uid;
}

PropertyList::UID Archiver::place(PropertyList value) {
    objects_.push_back(std::move(value));
    return {objects_.size() - 1};
}

} // namespace

std::string NSKeyedArchiver::archivedDataWithRootObject(const Ref<NSObject>& root) {
    return Archiver().archive(root);
}

} // namespace tesmar
