#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/archive/internal/ArchiveBudget.h"
#include "tesmar/platform/foundation/archive/internal/keyed_archive_format.h"
#include "tesmar/platform/foundation/archive/internal/property_list_objects.h"
#include "tesmar/platform/foundation/archive/internal/utf.h"
#include "tesmar/platform/foundation/runtime.h"

#include <algorithm>
#include <span>

namespace tesmar {
namespace {

using namespace keyed_archive_format;

// Every object is made once, when it is first asked for. Copies of text and bytes are paid for each
// time, because many objects may refer to the same ones.
class Unarchiver final : public NSCoder {
  public:
    explicit Unarchiver(const PropertyList& archive) : archive_(archive) {}

    Ref<NSObject> unarchive();

    std::optional<bool> decodeBool(std::string_view key) override;
    std::optional<long long> decodeInteger(std::string_view key) override;
    std::optional<double> decodeDouble(std::string_view key) override;
    std::optional<std::string> decodeString(std::string_view key) override;
    std::optional<std::string> decodeBytes(std::string_view key) override;
    Ref<NSObject> decodeObject(std::string_view key) override;
    std::vector<Ref<NSObject>> decodeObjects(std::string_view key) override;
    std::vector<std::string> decodeStrings(std::string_view key) override;
    bool failed() const override { return failed_; }

  private:
    // An object of the table. The height counts the objects nested in it, itself included; the
    // weight counts all that are reached from it, shared ones each time.
    struct Slot {
        enum State { unread, open, done } state = unread;
        int height = 1;
        std::size_t weight = 1;
        Ref<NSObject> object;
    };

    const PropertyList* plainValue(const PropertyList& value) const;
    const PropertyList* plainValue(const PropertyList& record, std::string_view key) const;
    std::optional<NSNumber::Number> number(std::string_view key) const;
    std::optional<std::string> text(const PropertyList& value);
    std::span<const PropertyList> list(std::string_view key);
    Ref<NSObject> object(const PropertyList& value);
    Ref<NSObject> objectAt(std::uint64_t uid);
    Ref<NSObject> scalar(const PropertyList& value);
    Ref<NSObject> decodeRecord(Slot& slot, const PropertyList& record);
    const Class* classOf(const PropertyList& record) const;
    bool count(int height, std::size_t weight);
    std::nullptr_t fail();

    const PropertyList& archive_;
    const PropertyList::Array* objects_ = nullptr;
    std::vector<Slot> slots_;
    const PropertyList* record_ = nullptr; // of the object that is being decoded
    Slot* slot_ = nullptr;                 // likewise
    int depth_ = 0;
    ArchiveBudget budget_;
    bool failed_ = false;
};

Ref<NSObject> Unarchiver::unarchive() {
    const auto* archiver = archive_.find(kArchiverKey);
    const auto* objects = archive_.find(kObjectsKey);
    const auto* top = archive_.find(kTopKey);
    const auto* root = top ? top->find(kRootKey) : nullptr;
    const auto* uid = root ? root->get<PropertyList::UID>() : nullptr;
    const auto* name = archiver ? archiver->get<std::string>() : nullptr;
    objects_ = objects ? objects->get<PropertyList::Array>() : nullptr;
    if (!name || *name != kArchiverName || !objects_ || !uid)
        return nullptr;
    slots_.resize(objects_->size());
    const auto result = objectAt(uid->value);
    return failed_ ? nullptr : result;
}

std::optional<bool> Unarchiver::decodeBool(std::string_view key) {
    const auto value = number(key);
    if (!value)
        return std::nullopt;
    return std::visit([](auto n) { return n != 0; }, *value);
}

std::optional<long long> Unarchiver::decodeInteger(std::string_view key) {
    const auto value = number(key);
    if (!value)
        return std::nullopt;
    if (const auto* real = std::get_if<double>(&*value)) {
        constexpr double kTooLarge = 9223372036854775808.0; // 2^63
        if (!(*real >= -kTooLarge && *real < kTooLarge))
            return std::nullopt;
    }
    return std::visit([](auto n) { return static_cast<long long>(n); }, *value);
}

std::optional<double> Unarchiver::decodeDouble(std::string_view key) {
    const auto value = number(key);
    if (!value)
        return std::nullopt;
    return std::visit([](auto n) { return static_cast<double>(n); }, *value);
}

std::optional<std::string> Unarchiver::decodeString(std::string_view key) {
    const PropertyList* value = record_->find(key);
    return value ? text(*value) : std::nullopt;
}

std::optional<std::string> Unarchiver::decodeBytes(std::string_view key) {
    const PropertyList* value = plainValue(*record_, key);
    if (const auto* plain = value ? value->get<PropertyList::Data>() : nullptr) {
        if (budget_.spendScalar(plain->bytes.size()))
            return plain->bytes;
    } else if (const auto data = as<NSData>(decodeObject(key))) {
        if (budget_.spendScalar(data->bytes().size()))
            return data->bytes();
    }
    return std::nullopt;
}

Ref<NSObject> Unarchiver::decodeObject(std::string_view key) {
    const PropertyList* value = record_->find(key);
    return value ? object(*value) : nullptr;
}

std::vector<Ref<NSObject>> Unarchiver::decodeObjects(std::string_view key) {
    std::vector<Ref<NSObject>> objects;
    for (const PropertyList& element : list(key)) {
        auto decoded = object(element);
        if (!decoded) {
            fail();
            break;
        }
        objects.push_back(std::move(decoded));
    }
    return objects;
}

std::vector<std::string> Unarchiver::decodeStrings(std::string_view key) {
    std::vector<std::string> texts;
    for (const PropertyList& element : list(key)) {
        auto decoded = text(element);
        if (!decoded) {
            fail();
            break;
        }
        texts.push_back(*std::move(decoded));
    }
    return texts;
}

// The elements of a list, which may be missing; none when there are too many.
std::span<const PropertyList> Unarchiver::list(std::string_view key) {
    const PropertyList* value = record_->find(key);
    const auto* elements = value ? value->get<PropertyList::Array>() : nullptr;
    if (!elements)
        return {};
    if (budget_.spendElements(elements->size()))
        return *elements;
    fail();
    return {};
}

// The value itself, or the one in the table that it refers to. Null when that is not there.
const PropertyList* Unarchiver::plainValue(const PropertyList& value) const {
    const auto* uid = value.get<PropertyList::UID>();
    if (!uid)
        return &value;
    const bool isThere = uid->value != kNullUID.value && uid->value < objects_->size();
    return isThere ? &(*objects_)[uid->value] : nullptr;
}

const PropertyList* Unarchiver::plainValue(const PropertyList& record, std::string_view key) const {
    const PropertyList* value = record.find(key);
    return value ? plainValue(*value) : nullptr;
}

std::optional<NSNumber::Number> Unarchiver::number(std::string_view key) const {
    const PropertyList* value = plainValue(*record_, key);
    return value ? numberFromPropertyList(*value) : std::nullopt;
}

// Plain text need not become an object on the way.
std::optional<std::string> Unarchiver::text(const PropertyList& value) {
    const PropertyList* target = plainValue(value);
    if (const auto* plain = target ? target->get<std::string>() : nullptr) {
        if (isValidUtf8(*plain) && budget_.spendScalar(plain->size()))
            return *plain;
        fail();
    } else if (const auto string = as<NSString>(object(value))) {
        if (budget_.spendScalar(string->text().size()))
            return string->text();
    }
    return std::nullopt;
}

Ref<NSObject> Unarchiver::object(const PropertyList& value) {
    if (const auto* uid = value.get<PropertyList::UID>())
        return objectAt(uid->value);
    return count(1, 1) ? scalar(value) : fail();
}

Ref<NSObject> Unarchiver::objectAt(std::uint64_t uid) {
    if (uid == kNullUID.value)
        return nullptr;
    if (failed_ || uid >= slots_.size() || slots_[uid].state == Slot::open) // it contains itself
        return fail();
    Slot& slot = slots_[uid];
    if (slot.state == Slot::unread) {
        const PropertyList& value = (*objects_)[uid];
        slot.state = Slot::open;
        slot.object =
            value.get<PropertyList::Dictionary>() ? decodeRecord(slot, value) : scalar(value);
        slot.state = Slot::done;
    }
    if (!slot.object)
        return fail();
    return count(slot.height, slot.weight) ? slot.object : fail();
}

// Takes in, for the object that is being decoded, an object that it holds.
bool Unarchiver::count(int height, std::size_t weight) {
    if (!slot_)
        return true;
    slot_->height = std::max(slot_->height, height + 1);
    slot_->weight += weight;
    return slot_->height <= kDeepestArchive && slot_->weight <= kMostObjectsReached;
}

// Text, a number or bytes as an object; null when the value is something else.
Ref<NSObject> Unarchiver::scalar(const PropertyList& value) {
    if (value.get<PropertyList::Array>() || value.get<PropertyList::Dictionary>())
        return nullptr;
    if (const auto* data = value.get<PropertyList::Data>()) {
        // Becomes a record when it is written.
        if (!budget_.spendRecord() || !budget_.spendScalar(data->bytes.size()))
            return fail();
    } else {
        const auto* plain = value.get<std::string>();
        if ((plain && !isValidUtf8(*plain)) || !budget_.spendScalar(plain ? plain->size() : 0))
            return fail();
    }
    return objectFromPropertyList(value);
}

Ref<NSObject> Unarchiver::decodeRecord(Slot& slot, const PropertyList& record) {
    const Class* type = classOf(record);
    const auto object = type ? type->alloc() : nullptr;
    if (!object || depth_ >= kDeepestArchive ||
        !budget_.spendRecord(record.get<PropertyList::Dictionary>()->size()))
        return nullptr;
    const PropertyList* const outerRecord = std::exchange(record_, &record);
    Slot* const outerSlot = std::exchange(slot_, &slot);
    ++depth_;
    const bool decoded = object->initWithCoder(*this);
    --depth_;
    slot_ = outerSlot;
    record_ = outerRecord;
    return decoded ? object : nullptr;
}

// The first class of the record's chain of which there can be objects here.
const Class* Unarchiver::classOf(const PropertyList& record) const {
    constexpr std::size_t kLongestChain = 8;
    const PropertyList* description = plainValue(record, kClassKey);
    const PropertyList* chain = description ? description->find(kClassChainKey) : nullptr;
    const auto* names = chain ? chain->get<PropertyList::Array>() : nullptr;

    const auto named = [](const PropertyList* name) -> const Class* {
        const auto* text = name ? name->get<std::string>() : nullptr;
        const Class* found = text ? classNamed(*text) : nullptr;
        return found && found->hasCoding() ? found : nullptr;
    };
    const Class* found = description ? named(description->find(kClassNameKey)) : nullptr;
    for (std::size_t i = 0; !found && names && i < std::min(names->size(), kLongestChain); ++i)
        found = named(&(*names)[i]);
    return found;
}

std::nullptr_t Unarchiver::fail() {
    failed_ = true;
    return nullptr;
}

} // namespace

Ref<NSObject> NSKeyedUnarchiver::unarchiveObjectWithData(std::string_view bytes) {
    const auto archive = readPropertyList(bytes, kArchiveLimits);
    return archive ? Unarchiver(*archive).unarchive() : nullptr;
}

} // namespace tesmar
