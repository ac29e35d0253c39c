#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/archive/internal/property_list.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"

#include "support.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tesmar {
namespace {

using namespace std::string_literals;

using test::data, test::dictionary, test::list, test::number, test::text;

Ref<NSObject> unarchive(const std::string& bytes) {
    return NSKeyedUnarchiver::unarchiveObjectWithData(bytes);
}
Ref<NSObject> roundTrip(const Ref<NSObject>& object) {
    return unarchive(NSKeyedArchiver::archivedDataWithRootObject(object));
}

// A class of a higher floor, with a value of every kind.
class Lamp : public NSObject {
    TESMAR_CLASS
  public:
    bool initWithCoder(NSCoder& coder) override {
        on = coder.decodeBool("on").value_or(false);
        turns = coder.decodeInteger("turns").value_or(-1);
        glow = coder.decodeDouble("glow").value_or(-1);
        name = coder.decodeString("name").value_or("none");
        key = coder.decodeBytes("key").value_or("none");
        shade = coder.decodeObject("shade");
        bulbs = coder.decodeObjects("bulbs");
        return !coder.failed();
    }
    bool encodeWithCoder(NSCoder& coder) const override {
        coder.encodeBool(on, "on");
        coder.encodeInteger(turns, "turns");
        coder.encodeDouble(glow, "glow");
        coder.encodeString(name, "name");
        coder.encodeBytes(key, "key");
        coder.encodeObject(shade, "shade");
        coder.encodeObjects(bulbs, "bulbs");
        return true;
    }
    bool on = false;
    long long turns = 0;
    double glow = 0;
    std::string name, key;
    Ref<NSObject> shade;
    std::vector<Ref<NSObject>> bulbs;
};

Class& Lamp::classObject() {
    static Class type("Lamp", &NSObject::classObject(), allocator<Lamp>());
    return type;
}

TEST(Archive, ObjectsComeBackEqualAndOfTheirClass) {
    const auto inner = dictionary({{"", number(false)}, {"\u00e9", list({text("x")})}});
    const Ref<NSObject> objects[] = {
        text(""),       text("caf\u00e9 \U0001F600 \0 end"s),
        number(true),   number(1LL << 40),
        number(-0.1),   data("\0\xFF\x80"s),
        list({}),       list({text("a"), list({number(-1LL)}), data("")}),
        dictionary({}), dictionary({{"inner", inner}})->mutableCopy()};
    for (const auto& object : objects) {
        const auto bytes = NSKeyedArchiver::archivedDataWithRootObject(object);
        const auto decoded = unarchive(bytes);
        ASSERT_TRUE(decoded) << object->isa().name();
        EXPECT_TRUE(decoded->isEqual(object.get())) << object->isa().name();
        EXPECT_EQ(&decoded->isa(), &object->isa());
        EXPECT_EQ(NSKeyedArchiver::archivedDataWithRootObject(decoded), bytes);
        const auto original = as<NSNumber>(object);
        EXPECT_TRUE(!original || as<NSNumber>(decoded)->value() == original->value());
    }
}

TEST(Archive, ForeignClassesKeepEveryKindOfValue) {
    registerClass(Lamp::classObject());
    const auto lamp = make<Lamp>();
    const auto shared = text("shared");
    lamp->on = true;
    lamp->turns = std::numeric_limits<long long>::min();
    lamp->glow = std::numeric_limits<double>::infinity();
    lamp->name = "n\u00e4me";
    lamp->key = "\0\xFF"s;
    lamp->shade = shared;
    lamp->bulbs = {shared, make<NSObject>(), number(2LL)};
    const auto decoded = as<Lamp>(roundTrip(lamp));
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(decoded->on);
    EXPECT_EQ(decoded->turns, lamp->turns);
    EXPECT_EQ(decoded->glow, lamp->glow); // finite or not is the class's business
    EXPECT_EQ(decoded->name, lamp->name);
    EXPECT_EQ(decoded->key, lamp->key);
    ASSERT_EQ(decoded->bulbs.size(), 2u); // one had no coding
    EXPECT_EQ(decoded->bulbs[0], decoded->shade);
}

TEST(Archive, ValuesWithoutACodingAreLeftOutWithTheirKeys) {
    const auto endless = make<NSMutableDictionary>();
    endless->setObject(endless, "self");
    endless->setObject(list({endless, text("kept")}), "list");
    endless->setObject(text("\xFF"), "not text");
    endless->setObject(make<NSObject>(), "b");
    endless->setObject(text("value"), "c");
    const auto decoded = roundTrip(endless);
    endless->removeObjectForKey("self");
    endless->removeObjectForKey("list");
    const auto expected = dictionary({{"c", text("value")}, {"list", list({text("kept")})}});
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(decoded->isEqual(expected.get()));

    EXPECT_FALSE(roundTrip(make<NSObject>()));
    EXPECT_FALSE(roundTrip(nullptr));

    Ref<NSObject> deep = list({});
    for (int i = 0; i < 400; ++i)
        deep = list({deep, number(1LL)});
    EXPECT_TRUE(roundTrip(deep)); // to the depth that is read again

    std::vector<Ref<NSObject>> many;
    while (many.size() < 340)
        many.push_back(list({}));
    EXPECT_TRUE(roundTrip(list(many))); // as many as are read again
    many.insert(many.end(), {list({}), list({}), list({}), list({}), list({}), list({})});
    std::string complaint;
    setDiagnosticHandler([&](std::string_view message) { complaint = message; });
    EXPECT_FALSE(roundTrip(list(many)));
    setDiagnosticHandler({});
    EXPECT_NE(complaint.find("too large"), std::string::npos);
}

TEST(Archive, SharedObjectsStayShared) {
    const auto shared = dictionary({{"a", text("b")}});
    const auto decoded = as<NSArray>(roundTrip(list({shared, shared, list({shared})})));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->objects()[0], decoded->objects()[1]);
    EXPECT_EQ(decoded->objects()[0], as<NSArray>(decoded->objects()[2])->objects()[0]);
}

TEST(Archive, AnotherReaderUnderstandsOurs) {
    const auto bytes = NSKeyedArchiver::archivedDataWithRootObject(
        dictionary({{"data", data("\x01\x02")},
                    {"list", list({text("\u00e9"), number(1.5), number(true), number(7LL)})}})
            ->mutableCopy());
    const auto read = test::python(R"(
archive = plistlib.loads(sys.stdin.buffer.read())
objects = archive['$objects']
def value(x):
    if isinstance(x, UID): x = objects[x.data]
    if not isinstance(x, dict): return x
    chain = objects[x['$class'].data]['$classes']
    assert chain[0] == objects[x['$class'].data]['$classname']
    if 'NSDictionary' in chain:
        return (chain, [(value(k), value(v)) for k, v in zip(x['NS.keys'], x['NS.objects'])])
    return (chain, [value(v) for v in x['NS.objects']] if 'NSArray' in chain else x['NS.data'])
print(archive['$archiver'], archive['$version'], objects[0], ascii(value(archive['$top']['root'])))
)",
                                   bytes);
    if (!read)
        GTEST_SKIP() << "no python3";
    EXPECT_EQ(*read, "NSKeyedArchiver 100000 $null "
                     "(['NSMutableDictionary', 'NSDictionary', 'NSObject'], "
                     "[('data', (['NSData', 'NSObject'], b'\\x01\\x02')), "
                     "('list', (['NSArray', 'NSObject'], ['\\xe9', 1.5, True, 7]))])\n");
}

TEST(Archive, ReadsWhatAnotherWriterMakes) {
    registerClass(Lamp::classObject());
    const struct {
        const char* objects; // from number 1, the root, on
        Ref<NSObject> expected;
    } cases[] = {
        {"'plain'", text("plain")},
        {"b'bytes'", data("bytes")},
        {"2**64 - 1", number(18446744073709551615.0)},
        {"float('nan')", number(0.0)},
        {"float('-inf')", number(-std::numeric_limits<double>::max())},
        {"{'NS.string': 'm', '$class': UID(2)}, C('NSMutableString', 'NSString', 'NSObject')",
         text("m")},
        {"{'NS.string': UID(3), '$class': UID(2)}, C('NSString'), 'by reference'",
         text("by reference")},
        {"{'NS.bytes': b'\\xc3\\xa9', '$class': UID(2)}, C('NSString')", text("\u00e9")},
        {"{'NS.data': UID(3), '$class': UID(2)}, C('NSMutableData', 'NSData'), b'x'", data("x")},
        {"{'NS.dblval': 3, '$class': UID(2)}, C('NSNumber')", number(3.0)},
        {"{'NS.intval': 3.0, '$class': UID(2)}, C('NSNumber')", number(3LL)},
        {"{'NS.dblval': float('inf'), '$class': UID(2)}, C('NSNumber')",
         number(std::numeric_limits<double>::max())},
        {"{'NS.objects': [UID(3), 'inline', 4], '$class': UID(2)}, C('NSMutableArray', 'NSArray'), "
         "'a'",
         list({text("a"), text("inline"), number(4LL)})},
        {"{'NS.keys': [UID(3)], 'NS.objects': [UID(3)], '$class': UID(2), 'extra': UID(0)},"
         "{'$classname': 'Later', '$classes': ['Later', 'NSDictionary', 'NSObject'], "
         "'$classhints': ['X']}, 'a'",
         dictionary({{"a", text("a")}})},
        {"{'NS.keys': ['k', 'k'], 'NS.objects': [1, 2], '$class': UID(2)}, {'$classes': "
         "['NSDictionary']}",
         dictionary({{"k", number(2LL)}})},
    };
    std::string program = R"(
def C(*chain): return {'$classname': chain[0], '$classes': list(chain)}
def archive(*objects):
    return plistlib.dumps({'$version': 100000, '$archiver': 'NSKeyedArchiver', '$top': {'root': UID(1)},
                           '$objects': ['$null', *objects]}, fmt=plistlib.FMT_BINARY)
sys.stdout.buffer.write(plistlib.dumps([)";
    for (const auto& c : cases)
        program += "archive("s + c.objects + "),\n";
    program +=
        R"(archive({'on': 1, 'turns': 2.9, 'glow': UID(3), 'name': b'no text',
        'shade': UID(0), 'bulbs': 'no list', '$class': UID(2)}, {'$classname': 'Lamp'}, 5)
], fmt=plistlib.FMT_BINARY))
)";
    const auto output = test::python(program);
    if (!output)
        GTEST_SKIP() << "no python3";
    const auto archives = *readPropertyList(*output);
    const auto decoded = [&](std::size_t i) {
        return unarchive(
            (*archives.get<PropertyList::Array>())[i].get<PropertyList::Data>()->bytes);
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto object = decoded(i);
        ASSERT_TRUE(object) << cases[i].objects;
        EXPECT_TRUE(object->isEqual(cases[i].expected.get())) << cases[i].objects;
    }
    const auto lamp = as<Lamp>(decoded(std::size(cases)));
    ASSERT_TRUE(lamp);
    EXPECT_TRUE(lamp->on);
    EXPECT_EQ(lamp->turns, 2);
    EXPECT_EQ(lamp->glow, 5);
    EXPECT_EQ(lamp->name, "none"); // a value of another type counts as missing
    EXPECT_FALSE(lamp->shade);
    EXPECT_TRUE(lamp->bulbs.empty());
}

} // namespace
} // namespace tesmar
