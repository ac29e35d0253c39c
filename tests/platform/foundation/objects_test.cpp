// The object runtime with its delayed messages, dictionaries, scalars and bundles.
#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"

#include "support.h"

#include <array>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tesmar {
namespace {

using namespace test;

class Base : public NSObject {
    TESMAR_CLASS
  public:
    virtual std::string greet(const std::string& name, bool isLoud) {
        return name + (isLoud ? "!" : ".");
    }
    Ref<Base> twin(const Ref<Base>& other) { return other; }
    void ring() { log += "ring "; }
    void ringFor(const Ref<NSString>& guest) { log += guest ? guest->text() + " " : "null "; }
    static inline std::string log;
};

class Derived : public Base {
    TESMAR_CLASS
  public:
    std::string greet(const std::string& name, bool) override { return "derived " + name; }
};

Class& Base::classObject() {
    static Class type("Base", &NSObject::classObject(), allocator<Base>(),
                      {method<&Base::greet>("greet:loud:"), method<&Base::twin>("twin:"),
                       method<&Base::ring>("ring"), method<&Base::ringFor>("ringFor:")});
    return type;
}

Class& Derived::classObject() {
    static Class type("Derived", &Base::classObject(), allocator<Derived>());
    return type;
}

template <class... Arguments>
Value send(const Ref<NSObject>& object, const char* selector, Arguments&&... arguments) {
    const std::array<Value, sizeof...(arguments)> values{
        Value(std::forward<Arguments>(arguments))...};
    return performSelector(*object, Selector(selector), values);
}

TEST(Runtime, MessagesReachTheOverridingOperation) {
    const Ref<NSObject> base = make<Base>(), object = make<Derived>();
    EXPECT_EQ(std::get<std::string>(send(object, "greet:loud:", "Ann"s, true)), "derived Ann");
    EXPECT_EQ(std::get<std::string>(send(base, "greet:loud:", "Ann"s, 1.0)), "Ann!");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(send(object, "twin:", Value())));
    EXPECT_EQ(std::get<Ref<NSObject>>(send(object, "twin:", object)), object);
}

TEST(RuntimeDeathTest, MisuseEndsWithOneLineThatNamesIt) {
    const Ref<NSObject> object = make<Base>();
    const auto line = [](const char* text) { return "^tesmar: "s + text + "\n$"; };
    EXPECT_DEATH(send(object, "nosuch"), line("unrecognized selector \"nosuch\" sent to Base"));
    EXPECT_DEATH(send(object, "twin:"), line("selector \"twin:\" takes 1 arguments, not 0"));
    EXPECT_DEATH(send(object, "twin:", Ref<NSObject>(text(""))), line("a message argument .*"));
    EXPECT_DEATH(make<NSMutableDictionary>()->setObject(nullptr, "k"), line(".*\"k\" is null"));
    EXPECT_DEATH(NSBundle::registerBundle(nullptr), line("NSBundle.* is null"));
    NSRunLoop loop;
    EXPECT_DEATH(loop.schedule(0, nullptr), line("NSRunLoop.*empty function"));
    EXPECT_DEATH(loop.addFrameClient(nullptr), line("NSRunLoop.* is null"));
    const Selector ring("ring");
    EXPECT_DEATH(loop.performSelectorAfterDelay(nullptr, ring, nullptr, 0),
                 line(".*\"ring\" is null"));
}

TEST(RuntimeDeathTest, AFatalErrorIsToldFirstAndEndsAllTheSame) {
    const auto die = [](const FatalErrorHandler& handler) {
        setFatalErrorHandler([=](std::string_view message) {
            [[maybe_unused]] const auto size = ::write(2, message.data(), message.size());
            handler(message);
        });
        std::thread([] { fatalError("misuse"); }).join();
    };
    constexpr char kBoth[] = "^misusetesmar: misuse\n$";
    EXPECT_DEATH(die([](std::string_view) {}), kBoth);
    EXPECT_DEATH(die([](std::string_view) { throw 1; }), kBoth);
    EXPECT_DEATH(die([](std::string_view) { fatalError("again"); }), kBoth);
    EXPECT_DEATH(die([](std::string_view) { setFatalErrorHandler({}); }), kBoth);
}

TEST(Runtime, DelayedMessagesOwnTheirTargetUntilSentOrCancelled) {
    NSRunLoop loop;
    auto bell = make<Base>();
    const WeakRef<Base> weak = bell;
    loop.performSelectorAfterDelay(bell, Selector("ringFor:"), text("Ann"), 1);
    loop.performSelectorAfterDelay(bell, Selector("ringFor:"), nullptr, 1);
    loop.performSelectorAfterDelay(bell, Selector("ring"), nullptr, 3);
    loop.performSelectorAfterDelay(make<Base>(), Selector("ring"), nullptr, 2);
    bell.reset();
    loop.advanceTo(2);
    EXPECT_EQ(Base::log, "Ann null ring ");
    ASSERT_FALSE(weak.expired());
    loop.cancelPreviousPerformRequests(*weak.lock());
    EXPECT_TRUE(weak.expired());
}

TEST(Dictionary, CopiesShareValuesButNotEntries) {
    const auto value = text("v");
    const auto original = dictionary({{"b", value}, {"a", nullptr}, {"", value}});
    const auto copy = original->mutableCopy();
    EXPECT_EQ(copy->objectForKey("b"), value);
    copy->setObject(text("w"), "b");
    copy->removeObjectForKey("");
    copy->removeObjectForKey("missing");
    EXPECT_TRUE(copy->isEqual(dictionary({{"b", text("w")}}).get()));
    EXPECT_TRUE(original->isEqual(dictionary({{"", value}, {"b", value}}).get()));
    EXPECT_FALSE(copy->isEqual(original.get()) || original->isEqual(nullptr));
}

TEST(Dictionary, ComparesWithoutEndlessRecursion) {
    const auto a = make<NSMutableDictionary>(), b = make<NSMutableDictionary>();
    for (const char* key : {"1", "2"}) {
        a->setObject(b, key);
        b->setObject(a, key);
    }
    EXPECT_TRUE(a->isEqual(b.get()));
    b->setObject(text("x"), "3");
    EXPECT_FALSE(a->isEqual(b.get()));
    a->setObject(list({a, b}), "3"), b->setObject(list({b, a}), "3");
    EXPECT_TRUE(a->isEqual(b.get()));
    Ref<NSObject> wide = text("w"), same = text("w"), deep = text("d"), other = text("d");
    for (int i = 0; i < 40; ++i)
        wide = list({wide, wide}), same = list({same, same});
    EXPECT_TRUE(wide->isEqual(same.get()));
    for (int i = 0; i < 2000; ++i)
        deep = list({deep}), other = list({other});
    EXPECT_FALSE(deep->isEqual(other.get()));
    for (const char* key : {"1", "2", "3"}) // or they would own each other for ever
        a->removeObjectForKey(key), b->removeObjectForKey(key);
}

TEST(Scalars, EqualityComparesValuesNotRepresentations) {
    EXPECT_TRUE(text("\u00e9")->isEqual(text("e\u0301").get()));
    EXPECT_FALSE(text("\xFF")->isEqual(text("\xFE").get()));
    EXPECT_FALSE(text("a\0b"s)->isEqual(text("a\0c"s).get()));
    EXPECT_TRUE(localizedCaseInsensitiveLess("arial", "Bold"));
    EXPECT_FALSE(localizedCaseInsensitiveLess("Bold", "arial"));
    EXPECT_TRUE(number(1LL)->isEqual(number(1.0).get()));
    EXPECT_FALSE(number((1LL << 53) + 1)->isEqual(number(1LL << 53).get()));
}

TEST(Bundle, ServesOnlyRegularFilesOfItsOwnDirectory) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory(directory.path() / "sub");
    writeFile(directory.path() / "file", "a\0b"s);
    ::mkfifo((directory.path() / "fifo").c_str(), 0600);
    const auto bundle = NSBundle::bundleWithPath("test", directory.path());
    EXPECT_EQ(bundle->resource("file"), "a\0b"s);
    for (const char* name : {"", ".", "..", "sub", "sub/../file", "fifo", "missing"})
        EXPECT_FALSE(bundle->resource(name)) << name;
}

} // namespace
} // namespace tesmar
