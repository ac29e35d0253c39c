#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/archive/keyed_archive_format.h"
#include "tesmar/platform/foundation/archive/property_list_objects.h"
#include "tesmar/platform/foundation/archive/utf.h"
#include "tesmar/platform/foundation/foundation_classes.h"
#include "tesmar/platform/foundation/runtime.h"

#include <algorithm>
#include <charconv>

namespace tesmar {
namespace {

using namespace keyed_archive_format;

// "{{x, y}, {width, height}}", with as many spaces as one likes.
std::optional<CGRect> rectFromText(std::string_view text) {
    double numbers[4];
    std::size_t count = 0;
    for (const char *at = text.data(), *const end = at + text.size(); at < end;) {
        if (std::string_view("{}, ").find(*at) != std::string_view::npos) {
            ++at;
            continue;
        }
        if (count == 4)
            return std::nullopt;
        const auto [next, error] = std::from_chars(at, end, numbers[count++]);
        if (error != std::errc())
            return std::nullopt;
        at = next;
    }
    return count == 4 ? std::optional(finiteRect({numbers[0], numbers[1], numbers[2], numbers[3]}))
                      : std::nullopt;
}

std::size_t sizeOf(const PropertyList& value) {
    if (const auto* text = value.get<std::string>())
        return text->size();
    const auto* data = value.get<PropertyList::Data>();
    return data ? data->bytes.size() : 0;
}

// Every object is made once, when it is first asked for. Copies of text and bytes and the keys of
// records are paid for from one budget in proportion to the size of the archive, because many
// objects may refer to the same ones.
class Unarchiver final : public NSCoder {
  public:
    Unarchiver(const PropertyList& archive, std::size_t size)
        : archive_(archive), mostWeight_((64 << 10) + 8 * size), budget_(mostWeight_) {}

    Ref<NSObject> unarchive();

    std::optional<bool> decodeBool(std::string_view key) override;
    std::optional<long long> decodeInteger(std::string_view key) override;
    std::optional<double> decodeDouble(std::string_view key) override;
    std::optional<std::string> decodeString(std::string_view key) override;
    std::optional<std::string> decodeBytes(std::string_view key) override;
    std::optional<CGRect> decodeRect(std::string_view key) override;
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

    const PropertyList* valueIn(const PropertyList& record, std::string_view key) const;
    std::optional<NSNumber::Number> number(std::string_view key) const;
    Ref<NSObject> object(const PropertyList& value);
    Ref<NSObject> objectAt(std::uint64_t uid);
    Ref<NSObject> scalar(const PropertyList& value);
    Ref<NSObject> decodeRecord(Slot& slot, const PropertyList& record);
    const Class* classOf(const PropertyList& record) const;
    bool spend(std::size_t amount);
    std::nullptr_t fail();

    const PropertyList& archive_;
    const PropertyList::Array* objects_ = nullptr;
    std::vector<Slot> slots_;
    const PropertyList* record_ = nullptr; // of the object that is being decoded
    Slot* slot_ = nullptr;                 // likewise
    int depth_ = 0;
    std::size_t mostWeight_;
    std::size_t budget_;
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
    const auto string = as<NSString>(decodeObject(key));
    if (!string || !spend(string->text().size()))
        return std::nullopt;
    return string->text();
}

std::optional<std::string> Unarchiver::decodeBytes(std::string_view key) {
    const auto data = as<NSData>(decodeObject(key));
    if (!data || !spend(data->bytes().size()))
        return std::nullopt;
    return data->bytes();
}

std::optional<CGRect> Unarchiver::decodeRect(std::string_view key) {
    const auto text = decodeString(key);
    return text ? rectFromText(*text) : std::nullopt;
}

Ref<NSObject> Unarchiver::decodeObject(std::string_view key) {
    const PropertyList* value = record_->find(key);
    return value ? object(*value) : nullptr;
}

std::vector<Ref<NSObject>> Unarchiver::decodeObjects(std::string_view key) {
    std::vector<Ref<NSObject>> objects;
    const PropertyList* list = record_->find(key);
    const auto* elements = list ? list->get<PropertyList::Array>() : nullptr;
    for (std::size_t i = 0; elements && i < elements->size() && !failed_; ++i) {
        if (auto decoded = object((*elements)[i]))
            objects.push_back(std::move(decoded));
        else
            fail();
    }
    return objects;
}

std::vector<std::string> Unarchiver::decodeStrings(std::string_view key) {
    std::vector<std::string> texts;
    for (const auto& object : decodeObjects(key)) {
        const auto string = as<NSString>(object);
        if (string && spend(string->text().size()))
            texts.push_back(string->text());
        else
            fail();
    }
    return texts;
}

// What stands under `key`, be it there itself or in the table.
const PropertyList* Unarchiver::valueIn(const PropertyList& record, std::string_view key) const {
    const PropertyList* value = record.find(key);
    const auto* uid = value ? value->get<PropertyList::UID>() : nullptr;
    if (!uid)
        return value;
    return uid->value < objects_->size() ? &(*objects_)[uid->value] : nullptr;
}

std::optional<NSNumber::Number> Unarchiver::number(std::string_view key) const {
    const PropertyList* value = valueIn(*record_, key);
    return value ? numberFromPropertyList(*value) : std::nullopt;
}

Ref<NSObject> Unarchiver::object(const PropertyList& value) {
    if (const auto* uid = value.get<PropertyList::UID>())
        return objectAt(uid->value);
    if (slot_)
        ++slot_->weight;
    return scalar(value);
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
    if (slot_) {
        slot_->height = std::max(slot_->height, slot.height + 1);
        slot_->weight += slot.weight;
        if (slot_->height > kDeepestArchive || slot_->weight > mostWeight_)
            return fail();
    }
    return slot.object;
}

// Text, a number or bytes as an object; null when the value is something else.
Ref<NSObject> Unarchiver::scalar(const PropertyList& value) {
    if (value.get<PropertyList::Array>() || value.get<PropertyList::Dictionary>())
        return nullptr;
    const auto* text = value.get<std::string>();
    if ((text && !isValidUtf8(*text)) || !spend(sizeOf(value)))
        return fail();
    return objectFromPropertyList(value);
}

Ref<NSObject> Unarchiver::decodeRecord(Slot& slot, const PropertyList& record) {
    const Class* type = classOf(record);
    const auto object = type ? type->alloc() : nullptr;
    if (!object || depth_ >= kDeepestArchive ||
        !spend(record.get<PropertyList::Dictionary>()->size()))
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

// The first class of the record's chain that can be made here. The root class does not count: every
// chain ends in it, and an object of it would hold nothing.
const Class* Unarchiver::classOf(const PropertyList& record) const {
    constexpr std::size_t kLongestChain = 8;
    const PropertyList* description = valueIn(record, kClassKey);
    const PropertyList* chain = description ? description->find(kClassChainKey) : nullptr;
    const auto* names = chain ? chain->get<PropertyList::Array>() : nullptr;

    const auto named = [](const PropertyList* name) -> const Class* {
        const auto* text = name ? name->get<std::string>() : nullptr;
        const Class* found = text ? classNamed(*text) : nullptr;
        return found && found->superclass() ? found : nullptr;
    };
    const Class* found = description ? named(description->find(kClassNameKey)) : nullptr;
    for (std::size_t i = 0; !found && names && i < std::min(names->size(), kLongestChain); ++i)
        found = named(&(*names)[i]);
    return found;
}

bool Unarchiver::spend(std::size_t amount) {
    if (amount > budget_)
        return false;
    budget_ -= amount;
    return true;
}

std::nullptr_t Unarchiver::fail() {
    failed_ = true;
    return nullptr;
}

} // namespace

Ref<NSObject> NSKeyedUnarchiver::unarchiveObjectWithData(std::string_view bytes) {
    registerFoundationClasses();
    const auto archive = readPropertyList(bytes);
    return archive ? Unarchiver(*archive, bytes.size()).unarchive() : nullptr;
}

} // namespace tesmar
