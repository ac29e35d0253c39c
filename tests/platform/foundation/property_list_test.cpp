#include "tesmar/platform/foundation/archive/internal/property_list.h"

#include "support.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tesmar {
namespace {

using namespace std::string_literals;
using test::bigEndian;
using test::RawList;

// The bytes of a list tell all its types and values.
std::string written(const PropertyList& list) {
    return writePropertyList(list);
}

TEST(PropertyList, EveryObjectFormKeepsItsTypeAndValue) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        std::string object;
        PropertyList meaning;
        bool canonical = true; // written back as the same bytes
    } cases[] = {
        {"\x08"s, false},
        {"\x09"s, true},
        {"\x10\xFF"s, 255LL},
        {"\x11\xFF\xFF"s, 65535LL},
        {"\x12\xFF\xFF\xFF\xFF"s, 0xFFFFFFFFLL},
        {"\x13"s + bigEndian(~0ull, 8), -1LL},
        {"\x13"s + bigEndian(5, 8), 5LL, false},
        {"\x13"s + bigEndian(1ull << 63, 8), std::numeric_limits<long long>::min()},
        {"\x14"s + bigEndian(0, 8) + bigEndian(~0ull, 8), PropertyList::Integer{0, ~0ull}},
        {"\x14"s + bigEndian(7, 8) + bigEndian(9, 8), PropertyList::Integer{7, 9}},
        {"\x14"s + bigEndian(~0ull - 1, 8) + bigEndian(0, 8), PropertyList::Integer{-2, 0}},
        {"\x22\x3F\x80\x00\x00"s, 1.0f},
        {"\x22\x7F\x80\x00\x00"s, std::numeric_limits<float>::infinity()},
        {"\x23"s + bigEndian(1ull << 63, 8), -0.0},
        {"\x23"s + bigEndian(std::bit_cast<std::uint64_t>(nan), 8), nan},
        {"\x33"s + bigEndian(std::bit_cast<std::uint64_t>(1e9), 8), PropertyList::Date{1e9}},
        {"\x40"s, PropertyList::Data{""}},
        {"\x43\x00\xFF\x01"s, PropertyList::Data{"\x00\xFF\x01"s}},
        {"\x4F\x10\x0F"s + std::string(15, 'x'), PropertyList::Data{std::string(15, 'x')}},
        {"\x4F\x11\x01\x00"s + std::string(256, 'x'), PropertyList::Data{std::string(256, 'x')}},
        {"\x52"
         "a\0"s,
         "a\0"s},
        {"\x61\x00"
         "a"s,
         "a"s, false},
        {"\x63\x00\xE9\xD8\x3D\xDE\x00"s, "\u00e9\U0001F600"s},
        {"\x62\xD8\x3D\x00"
         "a"s,
         "\xED\xA0\xBD"
         "a"s},                                                 // half a pair
        {"\x62\xDE\x00\xD8\x3D"s, "\xED\xB8\x80\xED\xA0\xBD"s}, // both halves, the wrong way round
        {"\x80\x07"s, PropertyList::UID{7}},
        {"\x82\x01\x02\x03"s, PropertyList::UID{0x10203}, false},
        {"\x87"s + bigEndian(~0ull, 8), PropertyList::UID{~0ull}},
        {"\xA0"s, PropertyList::Array()},
        {"\xD0"s, PropertyList::Dictionary()},
    };
    for (const auto& c : cases) {
        const auto list = readPropertyList(RawList{{c.object}}.bytes());
        ASSERT_TRUE(list) << testing::PrintToString(c.object);
        EXPECT_EQ(written(*list), written(c.meaning)) << testing::PrintToString(c.object);
        EXPECT_EQ(written(*list).substr(8, c.object.size()) == c.object, c.canonical)
            << testing::PrintToString(c.object);
    }
}

TEST(PropertyList, ContainersKeepTheirOrderAndShareWhatIsEqual) {
    const PropertyList shared = PropertyList::Array{1LL, PropertyList::Set{{"x", 1LL}}};
    const PropertyList list =
        PropertyList::Dictionary{{"z", shared},
                                 {"a", shared},
                                 {"zero", PropertyList::Array{0.0, -0.0, 0.0f, 0LL, false}},
                                 {"z", "a key for the second time"}};
    EXPECT_EQ(written(*list.find("z")), written(shared));
    EXPECT_FALSE(list.find("y"));

    const std::string bytes = written(list);
    const auto again = readPropertyList(bytes);
    ASSERT_TRUE(again);
    EXPECT_EQ(written(*again), bytes);
    EXPECT_EQ(again->find("z")->get<PropertyList::Array>(),
              again->find("a")->get<PropertyList::Array>());
    // Root, 3 keys, the array, 1, the set, "x", 5 different zeros in an array, the last text.
    EXPECT_EQ(bytes[bytes.size() - 17], 15);
}

TEST(PropertyList, IllFormedTextIsWrittenWithReplacements) {
    const auto read = readPropertyList(written("a\xFF\xC3(\xE2\x82\xED\xA0\x80\xF5\x80"s));
    ASSERT_TRUE(read);
    EXPECT_EQ(*read->get<std::string>(), "a\uFFFD\uFFFD(\uFFFD\uFFFD\xED\xA0\x80\uFFFD\uFFFD");
}

TEST(PropertyList, AgreesWithAnIndependentImplementation) {
    const auto theirs = test::python(R"(
import datetime
value = {'bools': [True, False], 'ints': [0, 1, 255, 256, 65536, 2**32, 2**63 - 1, 2**64 - 1, -1],
  'reals': [0.5, -1e300, float('inf')], 'date': datetime.datetime(2020, 2, 3, 4, 5, 6),
  'data': bytes(range(256)), 'text': ['', 'a' * 300, '\u00e9', '\U0001f600' * 20],
  'uids': [UID(0), UID(256), UID(2**40)], 'none': None, 'deep': {'a': {'b': [[], {}]}},
  'many': [str(i) for i in range(700)]}
sys.stdout.buffer.write(plistlib.dumps(value, fmt=plistlib.FMT_BINARY, sort_keys=False)))");
    if (!theirs)
        GTEST_SKIP() << "no python3";
    const auto list = readPropertyList(*theirs);
    ASSERT_TRUE(list);
    EXPECT_EQ(written(*list), *theirs);
}

} // namespace
} // namespace tesmar
