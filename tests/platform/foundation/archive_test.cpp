#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"

#include "support.h"
#include "tests/platform/sanitized.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <pthread.h>

namespace tesmar {
namespace {

using namespace test;
using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;

constexpr auto archived = NSKeyedArchiver::archivedDataWithRootObject;
constexpr auto unarchived = NSKeyedUnarchiver::unarchiveObjectWithData;
Ref<NSObject> roundTrip(const Ref<NSObject>& object) {
    return unarchived(archived(object));
}

TEST(Archive, RoundTripKeepsValuesClassesAndSharing) {
    const auto shared = text("shared");
    const auto inner = dictionary({{"", number(false)}, {"\u00e9", list({text("x")})}});
    const auto original =
        list({shared, text("caf\u00e9 \U0001F600 \0 end"s), number(true),
              number(std::numeric_limits<long long>::min()), number(-0.1), data("\0\xFF\x80"s),
              list({shared, list({}), data("")}), dictionary({{"inner", inner}})->mutableCopy()});
    const auto bytes = archived(original);
    const auto decoded = as<NSArray>(unarchived(bytes));
    ASSERT_TRUE(original->isEqual(decoded.get()));
    EXPECT_EQ(archived(decoded), bytes);
    const auto& objects = decoded->objects();
    for (std::size_t i = 0; i < objects.size(); ++i)
        EXPECT_EQ(&objects[i]->isa(), &original->objects()[i]->isa());
    EXPECT_EQ(as<NSArray>(objects[6])->objects()[0], objects[0]);
}

TEST(Archive, ValuesWithoutACodingAreDroppedWithTheirKeys) {
    const auto cyclic = make<NSMutableDictionary>();
    cyclic->setObject(cyclic, "self");
    cyclic->setObject(list({cyclic, make<NSObject>(), text("stays")}), "list");
    cyclic->setObject(text("\xFF"), "not text");
    cyclic->setObject(make<NSObject>(), "b");
    cyclic->setObject(text("value"), "c");
    const auto decoded = roundTrip(cyclic);
    cyclic->removeObjectForKey("self");
    cyclic->removeObjectForKey("list");
    const auto expected = dictionary({{"c", text("value")}, {"list", list({text("stays")})}});
    EXPECT_TRUE(expected->isEqual(decoded.get()));
    EXPECT_FALSE(roundTrip(make<NSObject>()));
    EXPECT_FALSE(roundTrip(nullptr));
}

TEST(Archive, WritesNoArchiveThatCouldNotBeRead) {
    Ref<NSObject> deep = list({}), wide = text("x");
    for (int i = 0; i < 400; ++i)
        deep = list({deep, number(1LL)});
    EXPECT_TRUE(roundTrip(list({deep, list({deep})}))); // to the greatest depth of an archive
    for (int i = 0; i < 20; ++i)
        wide = list({wide, wide});
    std::vector<Ref<NSObject>> many;
    while (many.size() < 346) {
        many.push_back(list({}));
        EXPECT_TRUE(many.size() != 340 || roundTrip(list(many)));
    }
    int complaints = 0;
    setDiagnosticHandler([&](std::string_view) { ++complaints; });
    for (const auto& large : {list(many), list({wide}), list({text(std::string(30000, 'x'))})})
        EXPECT_EQ(archived(large), "");
    EXPECT_EQ(complaints, 3);
    setDiagnosticHandler({});
}

// An archive with these objects in its table, from index 1 on.
std::string of(Array objects) {
    objects.insert(objects.begin(), "$null");
    return writePropertyList(Dictionary{{"$version", 100000LL},
                                        {"$archiver", "NSKeyedArchiver"},
                                        {"$top", Dictionary{{"root", UID{1}}}},
                                        {"$objects", std::move(objects)}});
}
PropertyList chain(Array names) {
    return Dictionary{{"$classes", names}, {"$classname", names.front()}};
}
// A record whose class is at index 2.
PropertyList record(Dictionary values) {
    values.push_back({"$class", UID{2}});
    return values;
}
PropertyList array(Array elements) {
    return record({{"NS.objects", std::move(elements)}});
}
PropertyList dict(Array keys, Array values) {
    return record({{"NS.keys", std::move(keys)}, {"NS.objects", std::move(values)}});
}

TEST(Archive, HasTheFormThatOtherReadersExpect) {
    EXPECT_EQ(
        archived(dictionary({{"k", list({text("e")})}})),
        of({Dictionary{
                {"NS.keys", Array{UID{2}}}, {"NS.objects", Array{UID{3}}}, {"$class", UID{6}}},
            "k", Dictionary{{"NS.objects", Array{UID{4}}}, {"$class", UID{5}}}, "e",
            chain({"NSArray", "NSObject"}), chain({"NSDictionary", "NSObject"})}));
}

TEST(Archive, OtherWritersArchivesDecodeToTheirObjectOrToNull) {
    registerClass(NSBundle::classObject());
    const PropertyList arrays = chain({"NSArray", "NSObject"}), dicts = chain({"NSDictionary"});
    const PropertyList strings = chain({"NSString"}), numbers = chain({"NSNumber"});
    const PropertyList later = Dictionary{{"$classname", "X"}, {"$classes", Array{"NSDictionary"}}};
    const PropertyList bytes = PropertyList::Data{"\xC3\xA9"}, bad = PropertyList::Data{"\xFF"};
    const double largest = std::numeric_limits<double>::max();
    const auto ab4 = list({text("a"), text("b"), number(4LL)});
    const Ref<NSObject> null, k2 = dictionary({{"k", number(2LL)}});
    std::string otherArchiver = of({"text"});
    otherArchiver.replace(otherArchiver.find("NSKeyed"), 7, "NSOther");
    const struct {
        const char* what;
        std::string archive;
        Ref<NSObject> expected;
    } cases[] = {
        {"text", of({"plain"}), text("plain")},
        {"a large number", of({PropertyList::Integer{0, ~0ull}}), number(0x1p64)},
        {"NaN", of({NAN}), number(0.0)},
        {"a superclass", of({record({{"NS.string", "m"}}), chain({"X", "NSString"})}), text("m")},
        {"a reference", of({record({{"NS.string", UID{3}}}), strings, "m"}), text("m")},
        {"UTF-8 bytes", of({record({{"NS.bytes", bytes}}), strings}), text("\u00e9")},
        {"data", of({record({{"NS.data", UID{3}}}), chain({"NSData"}), bytes}), data("\xC3\xA9")},
        {"an integer", of({record({{"NS.intval", 3.0}}), numbers}), number(3LL)},
        {"an infinite one", of({record({{"NS.dblval", INFINITY}}), numbers}), number(largest)},
        {"a truncated one", of({record({{"NS.intval", 2.9}}), numbers}), number(2LL)},
        {"a referenced one", of({record({{"NS.dblval", UID{3}}}), numbers, 5LL}), number(5.0)},
        {"a Boolean", of({record({{"NS.boolval", 1LL}}), numbers}), number(true)},
        {"inline elements", of({array({UID{3}, "b", 4LL}), arrays, "a"}), ab4},
        {"a later class", of({dict({UID{3}}, {2LL}), later, "k"}), k2},
        {"a key twice", of({dict({"k", "k"}, {1LL, 2LL}), dicts}), k2},
        {"another archiver", otherArchiver, null},
        {"half a surrogate pair", of({"\xED\xA0\x80"}), null},
        {"an abstract class", of({array({}), chain({"NSBundle"})}), null},
        {"a class without a coding", of({array({}), chain({"NSObject"})}), null},
        {"a list in itself", of({array({UID{1}}), arrays}), null},
        {"the null object in a list", of({array({UID{0}}), arrays}), null},
        {"too many keys", of({dict({"a", "b"}, {"a"}), dicts}), null},
        {"one bad value", of({dict({"a", "b"}, {"a", UID{99}}), dicts}), null},
        {"text of bad bytes", of({record({{"NS.bytes", bad}}), strings}), null},
        {"text that is data", of({record({{"NS.string", bytes}}), strings}), null},
        {"a list that is text", of({record({{"NS.objects", "none"}}), arrays}), list({})},
        {"text that is a number", of({record({{"NS.string", 1LL}}), strings}), null},
    };
    for (const auto& c : cases) {
        const auto object = unarchived(c.archive);
        EXPECT_TRUE(c.expected ? c.expected->isEqual(object.get()) : !object) << c.what;
    }
}

TEST(Archive, TheDeepestDecodesOnASmallStack) {
    Ref<NSObject> deep = text("x");
    for (int i = 0; i < 400; ++i)
        deep = dictionary({{"k", deep}});
    PropertyList nested = Array{};
    std::string deepestList;
    for (std::string bytes; unarchived(bytes = of({"text", nested})); nested = Array{nested})
        deepestList = bytes;
    for (const std::string& archive : {archived(list({deep})), deepestList}) {
        pthread_attr_t small;
        ::pthread_attr_init(&small);
        ::pthread_attr_setstacksize(&small, kSanitized ? 1 << 20 : 64 << 10);
        pthread_t thread;
        const auto decode = [](void* bytes) -> void* {
            return unarchived(*static_cast<const std::string*>(bytes)) ? bytes : nullptr;
        };
        ASSERT_EQ(::pthread_create(&thread, &small, decode, const_cast<std::string*>(&archive)), 0);
        void* decoded = nullptr;
        ::pthread_join(thread, &decoded);
        EXPECT_TRUE(decoded);
    }
}

} // namespace
} // namespace tesmar
