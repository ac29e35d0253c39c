// Bytes that mean harm: every one is answered, quickly and in little memory.
#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/archive/property_list.h"
#include "tesmar/platform/foundation/scalars.h"

#include "support.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <gtest/gtest.h>
#include <malloc.h>
#include <new>

namespace {

std::size_t liveBytes = 0, peakBytes = 0;

} // namespace

// Every allocation of this program is counted.
void* operator new(std::size_t size) {
    void* memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    liveBytes += malloc_usable_size(memory);
    peakBytes = std::max(peakBytes, liveBytes);
    return memory;
}
void operator delete(void* memory) noexcept {
    liveBytes -= malloc_usable_size(memory);
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace tesmar {
namespace {

using namespace std::string_literals;
using test::bigEndian;
using test::RawList;
using UID = PropertyList::UID;

// Runs `read` on the bytes within what a hostile input may cost.
template <class Read>
auto bounded(Read&& read, const std::string& bytes) {
    const std::size_t before = peakBytes = liveBytes;
    const std::clock_t start = std::clock();
    auto result = read(bytes);
    const double milliseconds = 1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    // Ten times the aim, for slow machines and sanitizers.
    EXPECT_LT(milliseconds, 10 * (1 + static_cast<double>(bytes.size()) / 100e3));
    EXPECT_LT(peakBytes - before, std::max<std::size_t>(1 << 20, 100 * bytes.size()));
    return result;
}

std::string arrayOf(const std::vector<std::uint64_t>& references, std::size_t size) {
    std::string object = "\xAF\x12" + bigEndian(references.size(), 4);
    for (const auto reference : references)
        object += bigEndian(reference, size);
    return object;
}

// Objects of which number i refers to those that `references` gives.
RawList listOf(std::uint64_t count,
               const std::function<std::vector<std::uint64_t>(std::uint64_t)>& references) {
    RawList list;
    list.referenceSize = 4;
    for (std::uint64_t i = 0; i < count; ++i)
        list.objects.push_back(arrayOf(references(i), 4));
    return list;
}

TEST(HostilePropertyList, IsRefused) {
    const RawList small{{"\xA1\x01"s, "\x09"s}};
    const auto trailer = [&](auto change) {
        RawList list = small;
        change(list);
        return list.bytes();
    };
    std::vector<std::uint64_t> all(1000), innermostFirst{99'999};
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = i % 999 + 1;
    for (std::uint64_t i = 99'999; i > 0; --i)
        innermostFirst.push_back(i);
    RawList aliased = listOf(1000, [&](auto) { return all; });
    aliased.objects.resize(1);
    aliased.objects.resize(1000, "");
    aliased.everyOffset = 8;

    const struct {
        const char* what;
        std::string bytes;
    } cases[] = {
        {"empty", ""},
        {"nothing but a header", "bplist00"},
        {"another version", "bplist15" + small.bytes().substr(8)},
        {"text",
         "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict/></plist>" + std::string(64, ' ')},
        {"no objects", trailer([](auto& list) { list.objectCount = 0; })},
        {"too many objects", trailer([](auto& list) { list.objectCount = 3; })},
        {"objects by the size of memory", trailer([](auto& list) { list.objectCount = ~0ull; })},
        {"a count that overflows", trailer([](auto& list) { list.objectCount = 1ull << 61; })},
        {"a root outside the table", trailer([](auto& list) { list.root = 2; })},
        {"a table behind the end", trailer([](auto& list) { list.tableStart = 1 << 20; })},
        {"a table that wraps around", trailer([](auto& list) { list.tableStart = ~0ull - 7; })},
        {"a table in the header", trailer([](auto& list) { list.tableStart = 0; })},
        {"references of no size", trailer([](auto& list) { list.referenceSize = 0; })},
        {"references of 9 bytes", trailer([](auto& list) { list.referenceSize = 9; })},
        {"offsets behind the end", trailer([](auto& list) { list.everyOffset = ~0ull; })},
        {"offsets into the header", trailer([](auto& list) { list.everyOffset = 7; })},
        {"offsets into the table", trailer([](auto& list) { list.everyOffset = 11; })},
        {"a null", RawList{{"\x00"s}}.bytes()},
        {"an integer of 32 bytes", RawList{{"\x15"s + std::string(32, 'x')}}.bytes()},
        {"a real of 16 bytes", RawList{{"\x24"s + std::string(16, 'x')}}.bytes()},
        {"a short date", RawList{{"\x32"s + std::string(8, 'x')}}.bytes()},
        {"a UID of 9 bytes", RawList{{"\x88"s + std::string(9, 'x')}}.bytes()},
        {"ASCII that is none", RawList{{"\x52\xC3\xA9"s}}.bytes()},
        {"a number as a key", RawList{{"\xD1\x01\x01"s, "\x10\x01"s}}.bytes()},
        {"a reference outside the table", RawList{{"\xA1\x02"s, "\x09"s}}.bytes()},
        {"a count that is no integer", RawList{{"\xAF\x23"s + bigEndian(0, 8)}}.bytes()},
        {"an array of 2^32", RawList{{"\xAF\x13"s + bigEndian(1ull << 32, 8)}}.bytes()},
        {"a dictionary whose size overflows",
         RawList{{"\xDF\x13"s + bigEndian(1ull << 63, 8)}}.bytes()},
        {"data of 4 GB", RawList{{"\x4F\x12\xFF\xFF\xFF\xFF"s}}.bytes()},
        {"text whose size overflows", RawList{{"\x6F\x13"s + bigEndian(1ull << 63, 8)}}.bytes()},
        {"itself", RawList{{"\xA1\x00"s}}.bytes()},
        {"itself, far down",
         RawList{{"\xA1\x01"s, "\xD1\x03\x02"s, "\xC1\x00"s, "\x51k"s}}.bytes()},
        {"100,000 nested arrays", listOf(100'000,
                                         [](auto i) {
                                             return std::vector<std::uint64_t>{
                                                 std::min<std::uint64_t>(i + 1, 99'999)};
                                         })
                                      .bytes()},
        {"100,000 nested arrays, the innermost first",
         listOf(100'000,
                [&](auto i) {
                    return i == 0       ? innermostFirst
                           : i < 99'999 ? std::vector<std::uint64_t>{i + 1}
                                        : std::vector<std::uint64_t>{};
                })
             .bytes()},
        {"2^40 values in 40 objects", listOf(41,
                                             [](auto i) {
                                                 return i < 40 ? std::vector<std::uint64_t>{i + 1,
                                                                                            i + 1}
                                                               : std::vector<std::uint64_t>{};
                                             })
                                          .bytes()},
        {"one array at a thousand places", aliased.bytes()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_FALSE(bounded(readPropertyList, c.bytes));
    }
}

TEST(HostilePropertyList, SharedContentsAreHeldAndWrittenOnce) {
    // 5,000 references to one text of 5,000 characters.
    RawList list{{arrayOf(std::vector<std::uint64_t>(5000, 1), 1),
                  "\x5F\x11" + bigEndian(5000, 2) + std::string(5000, 'x')}};
    const auto read = bounded(readPropertyList, list.bytes());
    ASSERT_TRUE(read);
    bounded([&](const std::string&) { return writePropertyList(*read); }, list.bytes());
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
    // Number 1 is the class, the root comes last, everything else in between.
    const auto chained = [&](std::uint64_t count, auto elements) {
        PropertyList::Array objects{array};
        for (std::uint64_t i = 2; i < count + 2; ++i)
            objects.push_back(arrayRecord(elements(i), 1));
        return archiveOf(std::move(objects), UID{count + 1});
    };
    PropertyList::Array longKeys{dictionary, std::string(5000, 'k')}, everyone;
    for (std::uint64_t i = 3; i < 1003; ++i) {
        longKeys.push_back(dictionaryRecord({UID{2}}, {UID{2}}, 1));
        everyone.push_back(UID{i});
    }
    longKeys.push_back(arrayRecord(everyone, 1004));
    longKeys.push_back(array);

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
        {"a UID by itself", archiveOf({UID{1}})},
        {"a bare list", archiveOf({PropertyList::Array{"text"}})},
        {"a date", archiveOf({PropertyList::Date{0}})},
        {"half a surrogate pair", archiveOf({halfPair})},
        {"a record without a class", archiveOf({PropertyList::Dictionary{}})},
        {"a class outside the table", archiveOf({arrayRecord({}, 9)})},
        {"a class that is no record", archiveOf({arrayRecord({}, 2), "NSArray"})},
        {"a class that nobody knows",
         archiveOf({arrayRecord({}, 2), classRecord({"NoSuch", "NSObject"})})},
        {"an abstract class",
         archiveOf({arrayRecord({}, 2), classRecord({"NSBundle", "NSObject"})})},
        {"a list in itself", archiveOf({arrayRecord({UID{1}}, 2), array})},
        {"the null object in a list", archiveOf({arrayRecord({UID{0}}, 2), array})},
        {"a date in a list", archiveOf({arrayRecord({PropertyList::Date{0}}, 2), array})},
        {"a record in a list", archiveOf({arrayRecord({arrayRecord({}, 2)}, 2), array})},
        {"more keys than values", archiveOf({dictionaryRecord({"a", "b"}, {"a"}, 2), dictionary})},
        {"a number as a key", archiveOf({dictionaryRecord({1LL}, {"a"}, 2), dictionary})},
        {"one bad value among good ones",
         archiveOf({dictionaryRecord({"a", "b"}, {"a", UID{99}}, 2), dictionary})},
        {"text of bad bytes",
         archiveOf({recordWith("NS.bytes", PropertyList::Data{"\xFF"}), string})},
        {"text of no text", archiveOf({recordWith("NS.string", 1LL), string})},
        {"300 lists deep", chained(300,
                                   [](std::uint64_t i) {
                                       return i == 2 ? PropertyList::Array{}
                                                     : PropertyList::Array{UID{i - 1}};
                                   })},
        {"20,000 lists deep, the innermost first",
         chained(20'000,
                 [](std::uint64_t i) {
                     PropertyList::Array elements;
                     for (std::uint64_t j = i == 20'001 ? 2 : i - 1; j > 1 && j < i; ++j)
                         elements.push_back(UID{j});
                     return elements;
                 })},
        {"2^40 lists in 40", chained(40,
                                     [](std::uint64_t i) {
                                         return i == 2
                                                    ? PropertyList::Array{}
                                                    : PropertyList::Array{UID{i - 1}, UID{i - 1}};
                                     })},
        {"one long key in 1,000 dictionaries", archiveOf(longKeys, UID{1003})},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_FALSE(bounded(NSKeyedUnarchiver::unarchiveObjectWithData, c.bytes));
    }
}

TEST(HostileArchive, CutAnywhereDecodesToNothing) {
    const auto inner =
        NSDictionary::dictionaryWithEntries({{"bytes", NSData::dataWithBytes("\0\xFF"s)}});
    const auto archive = NSKeyedArchiver::archivedDataWithRootObject(
        NSDictionary::dictionaryWithEntries({{"text", NSString::stringWithString("\u00e9")},
                                             {"number", NSNumber::numberWith(0.5)},
                                             {"inner", inner}}));
    ASSERT_TRUE(NSKeyedUnarchiver::unarchiveObjectWithData(archive));
    for (std::size_t size = 0; size < archive.size(); ++size) {
        EXPECT_FALSE(bounded(readPropertyList, archive.substr(0, size))) << size;
        bounded(NSKeyedUnarchiver::unarchiveObjectWithData, archive.substr(size));
        for (const char flip : {'\x01', '\x80', '\xFF'}) {
            std::string changed = archive;
            changed[size] ^= flip;
            bounded(NSKeyedUnarchiver::unarchiveObjectWithData, changed);
        }
    }
}

} // namespace
} // namespace tesmar
