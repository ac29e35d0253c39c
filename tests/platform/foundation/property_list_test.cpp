// Well-formed lists keep their values; malformed ones are rejected quickly and in little memory.
#include "tests/platform/measured.h"

#include "support.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>

namespace tesmar {
namespace {

using namespace test;
using PL = PropertyList;

// The bytes of a list determine all its types and values.
constexpr auto written = writePropertyList;

TEST(PropertyList, EveryObjectFormKeepsItsTypeAndValue) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::string x(15, 'x');
    const struct {
        std::string object;
        PropertyList meaning;
        bool isCanonical = true; // written back as the same bytes
    } cases[] = {
        {"\x12\xFF\xFF\xFF\xFF"s, 0xFFFFFFFFLL},
        {"\x13"s + bigEndian(5, 8), 5LL, false},
        {"\x13"s + bigEndian(1ull << 63, 8), std::numeric_limits<long long>::min()},
        {"\x14"s + bigEndian(~0ull - 1, 8) + bigEndian(0, 8), PL::Integer{-2, 0}},
        {"\x22\x3F\x80\x00\x00"s, 1.0f},
        {"\x23"s + bigEndian(std::bit_cast<std::uint64_t>(nan), 8), nan},
        {"\x33"s + bigEndian(std::bit_cast<std::uint64_t>(1e9), 8), PL::Date{1e9}},
        {"\x4F\x10\x0F"s + x, PL::Data{x}},
        {"\x52z\0"s, "z\0"s},
        {"\x61\x00z"s, "z", false},
        {"\x63\x00\xE9\xD8\x3D\xDE\x00"s, "\u00e9\U0001F600"},
        {"\x62\xD8\x3D\x00z"s, "\xED\xA0\xBDz"},               // half a pair
        {"\x62\xDE\x00\xD8\x3D"s, "\xED\xB8\x80\xED\xA0\xBD"}, // halves in the wrong order
        {"\x82\x01\x02\x03"s, PL::UID{0x10203}, false},
    };
    for (const auto& c : cases) {
        const auto list = readPropertyList(RawList{{c.object}}.bytes());
        ASSERT_TRUE(list) << testing::PrintToString(c.object);
        EXPECT_EQ(written(*list), written(c.meaning)) << testing::PrintToString(c.object);
        EXPECT_EQ(written(*list).substr(8, c.object.size()) == c.object, c.isCanonical)
            << testing::PrintToString(c.object);
    }
    const auto replaced = readPropertyList(written("a\xFF\xC3(\xE2\x82\xED\xA0\x80\xF5\x80"));
    EXPECT_EQ(*replaced->get<std::string>(), "a\uFFFD\uFFFD(\uFFFD\uFFFD\xED\xA0\x80\uFFFD\uFFFD");
}

TEST(PropertyList, WritesSharedAndEqualValuesOnce) {
    const PropertyList shared = PL::Array{1LL, PL::Set{{"x", 1LL}}};
    const PropertyList zeros = PL::Array{0.0, -0.0, 0.0f, 0LL, false};
    const PropertyList list =
        PL::Dictionary{{"z", shared}, {"a", shared}, {"zero", zeros}, {"z", "second z"}};
    EXPECT_EQ(list.find("z")->get<PL::Array>(), shared.get<PL::Array>());
    const std::string bytes = written(list);
    const auto again = readPropertyList(bytes);
    EXPECT_EQ(again->find("z")->get<PL::Array>(), again->find("a")->get<PL::Array>());
    // Root, 3 keys, the array, 1, the set, "x", 5 different zeros in an array, the last text.
    EXPECT_EQ(bytes[bytes.size() - 17], 15);
}

TEST(PropertyList, ShortTextsAreWrittenInLittleMemory) {
    PL::Array texts;
    for (int i = 0; i < 100'000; ++i)
        texts.emplace_back(std::to_string(i % 99'999));
    std::string bytes;
    const Cost cost = measured([&] { bytes = writePropertyList(texts); });
    EXPECT_LT(cost.bytes, 8 * bytes.size());
    EXPECT_EQ(readPropertyList(bytes)->get<PL::Array>()->size(), texts.size());
}

// The file holds every type that Python's plistlib writes.
TEST(PropertyList, AgreesWithAnIndependentImplementation) {
    const auto theirs = readFile(TESMAR_EVERY_TYPE);
    const auto list = readPropertyList(theirs);
    ASSERT_TRUE(list);
    EXPECT_EQ(written(*list), theirs);
}

// Whether the list can be read; fails the test if that costs too much time or memory.
bool isRead(const RawList& list, const DecodeLimits& limits = kPreferencesLimits) {
    const std::string bytes = list.bytes();
    const std::size_t perByte = limits.bytes == kArchiveLimits.bytes ? 0 : 100;
    DecodeBudget budget(limits);
    bool result = false;
    const Cost cost = measured([&] { result = readPropertyList(bytes, budget).has_value(); });
    // Far above the aim of a millisecond for 100 KB, for busy machines and sanitizers.
    EXPECT_LT(cost.milliseconds, 40 * (1 + static_cast<double>(bytes.size()) / 100e3));
    EXPECT_LT(cost.bytes, std::max<std::size_t>(1 << 20, perByte * bytes.size()));
    return result;
}

TEST(HostilePropertyList, ImpossibleObjectsAreRefused) {
    const std::string large = bigEndian(1ull << 32, 8), overflowing = bigEndian(1ull << 63, 8);
    const std::string objects[] = {
        // Unknown kinds and sizes, and ASCII text that is not.
        "\x0C", "\x0F", "\xB0", "\x15" + std::string(32, 'x'), "\x24" + std::string(16, 'x'),
        "\x32" + std::string(8, 'x'), "\x88" + std::string(9, 'x'), "\x52\xC3\xA9",
        // References out of the table and into the object itself.
        "\xA1\x01", "\xA1\0"s, "\xD1\0\0"s,
        // A count that is a real, and counts beyond the end.
        "\xAF\x23" + bigEndian(0, 8), "\x4F\x12\xFF\xFF\xFF\xFF", "\xAF\x13" + large,
        "\xDF\x13" + overflowing, "\x6F\x13" + overflowing};
    for (const auto& object : objects)
        EXPECT_FALSE(isRead({{object}})) << testing::PrintToString(object);
    EXPECT_FALSE(isRead({{"\xA1\x01", "\xD1\x03\x02", "\xC1\0"s, "\x51k"}}));
    EXPECT_FALSE(isRead({{"\xD1\x01\x01", "\x10\x01"}})); // a key that is a number
}

using References = std::vector<std::uint64_t>;

// Arrays, of which number i refers to what `references` returns for it; the last one is empty.
template <class Function>
RawList arrays(std::uint64_t count, std::size_t referenceSize, Function&& references) {
    RawList list{{}, referenceSize};
    for (std::uint64_t i = 0; i < count; ++i) {
        const References all = i + 1 < count ? references(i) : References();
        list.objects.push_back("\xAF\x12" + bigEndian(all.size(), 4));
        for (const auto reference : all)
            list.objects.back() += bigEndian(reference, referenceSize);
    }
    return list;
}

TEST(HostilePropertyList, BombsAreRefused) {
    const auto next = [](auto i) { return References{i + 1}; };
    const auto nextTwice = [](auto i) { return References{i + 1, i + 1}; }; // 2^40 values
    const auto sharedChain = [&](std::uint64_t count) { // measured from its shallow end
        References innermostFirst;
        for (std::uint64_t i = count - 1; i > 0; --i)
            innermostFirst.push_back(i);
        return arrays(count, 4, [&](auto i) { return i == 0 ? innermostFirst : next(i); });
    };
    References all(1000);
    std::iota(all.begin(), all.end(), 1);
    const auto wide = [](auto) { return References(90'000, 1); };
    RawList shared = arrays(2, 1, [](auto) { return References(5000, 1); });
    shared.objects[1] = "\x5F\x11" + bigEndian(5000, 2) + std::string(5000, 'x');
    RawList aliased = arrays(1001, 2, [&](auto i) { return i == 0 ? all : References(); });
    std::fill(aliased.objects.begin() + 1, aliased.objects.end() - 1, ""); // all start at the text
    aliased.objects.back() = shared.objects[1];
    RawList longTable{std::vector<std::string>(12'000, "")};
    longTable.objects[0] = "\x08";
    EXPECT_FALSE(isRead(arrays(100'000, 4, next)));
    EXPECT_FALSE(isRead(sharedChain(100'000)));
    EXPECT_FALSE(isRead(arrays(41, 1, nextTwice)));
    EXPECT_FALSE(isRead(aliased));
    EXPECT_FALSE(isRead(longTable, kArchiveLimits) || isRead(arrays(2, 1, wide), kArchiveLimits));
    EXPECT_TRUE(isRead(shared));
    EXPECT_TRUE(isRead(arrays(512, 2, next)) && isRead(sharedChain(512)));
    EXPECT_FALSE(isRead(arrays(513, 2, next)) || isRead(sharedChain(513)));
}

} // namespace
} // namespace tesmar
