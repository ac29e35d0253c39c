// Bytes that mean harm: every one is answered, quickly and in little memory.
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/archive/internal/property_list.h"
#include "tests/platform/measured.h"

#include "support.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

using namespace std::string_literals;
using test::bigEndian;
using test::RawList;
using UID = PropertyList::UID;

// Runs `read` on the bytes within what a hostile input may cost.
template <class Read>
auto bounded(Read&& read, const std::string& bytes) {
    decltype(read(bytes)) result;
    const test::Cost cost = test::measured([&] { result = read(bytes); });
    // Far above the millisecond for 100 KB that is the aim, for busy machines and sanitizers.
    EXPECT_LT(cost.milliseconds, 40 * (1 + static_cast<double>(bytes.size()) / 100e3));
    EXPECT_LT(cost.bytes, std::max<std::size_t>(1 << 20, 100 * bytes.size()));
    return result;
}

const auto readList = [](const std::string& bytes) { return readPropertyList(bytes); };

using References = std::vector<std::uint64_t>;

std::string arrayOf(const References& references, std::size_t size) {
    std::string object = "\xAF\x12" + bigEndian(references.size(), 4);
    for (const auto reference : references)
        object += bigEndian(reference, size);
    return object;
}

// Arrays, of which number i refers to what `references` gives for it.
template <class Function>
RawList arrays(std::uint64_t count, Function&& references) {
    RawList list;
    list.referenceSize = 4;
    for (std::uint64_t i = 0; i < count; ++i)
        list.objects.push_back(arrayOf(references(i), 4));
    return list;
}

TEST(HostilePropertyList, ImpossibleObjectsAreRefused) {
    const std::string objects[] = {
        "\x0C"s, "\x0F"s, "\x15" + std::string(32, 'x'), "\x24" + std::string(16, 'x'),
        "\x32" + std::string(8, 'x'), "\x88" + std::string(9, 'x'), "\x52\xC3\xA9", "\xB0",
        "\xA1\x01",  // refers to what is not there
        "\xA1\x00"s, // contains itself
        "\xD1\x00\x00"s, "\xAF\x23" + bigEndian(0, 8), "\x4F\x12\xFF\xFF\xFF\xFF",
        // Counts that overflow when they are multiplied.
        "\xAF\x13" + bigEndian(1ull << 32, 8), "\xDF\x13" + bigEndian(1ull << 63, 8),
        "\x6F\x13" + bigEndian(1ull << 63, 8)};
    for (const auto& object : objects)
        EXPECT_FALSE(bounded(readList, RawList{{object}}.bytes()))
            << testing::PrintToString(object);
    EXPECT_FALSE(readPropertyList(RawList{{"\xD1\x01\x01", "\x10\x01"}}.bytes())); // key 1
    EXPECT_FALSE(readPropertyList(
        RawList{{"\xA1\x01", "\xD1\x03\x02", std::string("\xC1\0", 2), "\x51k"}}.bytes()));
}

TEST(HostilePropertyList, BombsAreRefused) {
    const auto last = [](std::uint64_t i, std::uint64_t count, References references) {
        return i + 1 < count ? references : References();
    };
    References innermostFirst, all;
    for (std::uint64_t i = 999; i > 0; --i)
        innermostFirst.push_back(i);
    for (std::uint64_t i = 1; i <= 1000; ++i)
        all.push_back(i);
    const std::string text = "\x5F\x11" + bigEndian(5000, 2) + std::string(5000, 'x');
    RawList aliased = arrays(1, [&](auto) { return all; });
    aliased.objects.resize(1000, ""); // these are where the next one is
    aliased.objects.push_back(text);
    const RawList lists[] = {
        arrays(100'000, [&](auto i) { return last(i, 100'000, {i + 1}); }),
        arrays(1000, [&](auto i) { return i == 0 ? innermostFirst : last(i, 1000, {i + 1}); }),
        arrays(41,
               [&](auto i) {
                   return last(i, 41, {i + 1, i + 1});
               }), // 2^40 values
        aliased,   // one text at a thousand places
    };
    for (const RawList& list : lists)
        EXPECT_FALSE(bounded(readList, list.bytes())) << &list - lists;
    const RawList shared{{arrayOf(References(5000, 1), 1), text}};
    EXPECT_TRUE(bounded(readList, shared.bytes()));
}

std::string archiveOf(PropertyList::Array objects, PropertyList root = UID{1}) {
    objects.insert(objects.begin(), "$null");
    return writePropertyList(
        PropertyList::Dictionary{{"$archiver", "NSKeyedArchiver"},
                                 {"$version", 100000LL},
                                 {"$top", PropertyList::Dictionary{{"root", root}}},
                                 {"$objects", std::move(objects)}});
}

PropertyList classRecord(PropertyList::Array chain) {
    return PropertyList::Dictionary{{"$classname", chain.front()}, {"$classes", chain}};
}

PropertyList arrayRecord(PropertyList::Array elements, std::uint64_t type) {
    return PropertyList::Dictionary{{"NS.objects", std::move(elements)}, {"$class", UID{type}}};
}

PropertyList dictionaryRecord(PropertyList::Array keys, PropertyList::Array values,
                              std::uint64_t type) {
    return PropertyList::Dictionary{
        {"NS.keys", std::move(keys)}, {"NS.objects", std::move(values)}, {"$class", UID{type}}};
}

TEST(HostileArchive, DecodesToNothing) {
    const PropertyList array = classRecord({"NSArray", "NSObject"});
    const PropertyList dictionary = classRecord({"NSDictionary", "NSObject"});
    const PropertyList string = classRecord({"NSString", "NSObject"});
    const std::string halfPair = "\xED\xA0\x80";
    const auto recordWith = [](const char* key, PropertyList value) {
        return PropertyList::Dictionary{{key, std::move(value)}, {"$class", UID{2}}};
    };

    const struct {
        const char* what;
        std::string bytes;
    } cases[] = {
        {"another list", writePropertyList(PropertyList::Dictionary{{"root", "text"}})},
        {"another archiver",
         archiveOf({"text"}).replace(archiveOf({"text"}).find("NSKeyed"), 7, "NSOther")},
        {"a root that is no reference", archiveOf({"text"}, "text")},
        {"a root outside the table", archiveOf({"text"}, UID{2})},
        {"the null object", archiveOf({"text"}, UID{0})},
        {"half a surrogate pair", archiveOf({halfPair})},
        {"a record without a class", archiveOf({PropertyList::Dictionary{}})},
        {"a class outside the table", archiveOf({arrayRecord({}, 9)})},
        {"a class that nobody knows",
         archiveOf({arrayRecord({}, 2), classRecord({"NoSuch", "NSObject"})})},
        {"an abstract class",
         archiveOf({arrayRecord({}, 2), classRecord({"NSBundle", "NSObject"})})},
        {"a class without a coding", archiveOf({arrayRecord({}, 2), classRecord({"NSObject"})})},
        {"a list in itself", archiveOf({arrayRecord({UID{1}}, 2), array})},
        {"the null object in a list", archiveOf({arrayRecord({UID{0}}, 2), array})},
        {"a record in a list", archiveOf({arrayRecord({arrayRecord({}, 2)}, 2), array})},
        {"more keys than values", archiveOf({dictionaryRecord({"a", "b"}, {"a"}, 2), dictionary})},
        {"one bad value among good ones",
         archiveOf({dictionaryRecord({"a", "b"}, {"a", UID{99}}, 2), dictionary})},
        {"text of bad bytes",
         archiveOf({recordWith("NS.bytes", PropertyList::Data{"\xFF"}), string})},
        {"text of no text", archiveOf({recordWith("NS.string", 1LL), string})},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_FALSE(bounded(NSKeyedUnarchiver::unarchiveObjectWithData, c.bytes));
    }
}

} // namespace
} // namespace tesmar
