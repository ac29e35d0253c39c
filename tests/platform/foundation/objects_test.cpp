// The object runtime, dictionaries and scalars.
#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"

#include "support.h"

#include <array>
#include <clocale>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace tesmar {
namespace {

using test::dictionary, test::number, test::text;

using namespace std::string_literals;

class Base : public NSObject {
    TESMAR_CLASS
  public:
    virtual std::string greet(const std::string& name, bool loud) {
        return name + (loud ? "!" : ".");
    }
    void setLevel(double level) { level_ = level; }
    double level() const { return level_; }
    Ref<Base> twin(const Ref<Base>& other) { return other; }
    void drop() {
        owner->reset();
        ++level_;
    }
    static double sum(double a, double b) { return a + b; }
    Ref<NSObject>* owner = nullptr;

  private:
    double level_ = 0;
};

class Derived : public Base {
    TESMAR_CLASS
  public:
    std::string greet(const std::string& name, bool) override { return "derived " + name; }
    void hidden() {}
};

Class& Base::classObject() {
    static Class type("Base", &NSObject::classObject(), allocator<Base>(),
                      {method<&Base::greet>("greet:loud:"), method<&Base::setLevel>("setLevel:"),
                       method<&Base::level>("level"), method<&Base::twin>("twin:"),
                       method<&Base::drop>("drop")},
                      {method<&Base::sum>("sum:with:")});
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

TEST(Runtime, MessagesReachTheOverridingOperationWithConvertedArguments) {
    const Ref<NSObject> object = make<Derived>();
    EXPECT_EQ(std::get<std::string>(send(object, "greet:loud:", "Ann"s, true)), "derived Ann");
    EXPECT_EQ(std::get<std::string>(send(make<Base>(), "greet:loud:", "Ann"s, 1.0)), "Ann!");
    send(object, "setLevel:", 3.0);
    EXPECT_EQ(std::get<double>(send(object, "level")), 3.0);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(send(object, "twin:", Value())));
    EXPECT_EQ(std::get<Ref<NSObject>>(send(object, "twin:", object)), object);
    const std::array<Value, 2> numbers{true, 41.0};
    EXPECT_EQ(std::get<double>(
                  performClassSelector(Derived::classObject(), Selector("sum:with:"), numbers)),
              42);
    EXPECT_FALSE(object->respondsToSelector(Selector("hidden")));
    EXPECT_EQ(Selector("a:b"), Selector("a:"s + "b"));
}

TEST(Runtime, AReceiverOutlivesTheMessageThatReleasesIt) {
    Ref<NSObject> object = make<Base>();
    as<Base>(object)->owner = &object;
    send(object, "drop"); // the sanitizer tells
    EXPECT_FALSE(object);
}

TEST(RuntimeDeathTest, MisuseEndsWithOneLineThatNamesIt) {
    const Ref<NSObject> object = make<Base>();
    const auto line = [](const char* text) { return "^tesmar: "s + text + "\n$"; };
    EXPECT_DEATH(send(object, "nosuch"), line("unrecognized selector \"nosuch\" sent to Base"));
    EXPECT_DEATH(send(object, "setLevel:"),
                 line("selector \"setLevel:\" takes 1 arguments, not 0"));
    EXPECT_DEATH(send(object, "setLevel:", "x"s),
                 line("a message argument .* a number .* a string"));
    EXPECT_DEATH(send(object, "twin:", Ref<NSObject>(make<NSObject>())),
                 line("a message argument .*"));
    EXPECT_DEATH(make<NSMutableDictionary>()->setObject(nullptr, "k"), line(".*\"k\" is null"));
}

TEST(Runtime, ClassesAreFoundByNameOnceRegistered) {
    EXPECT_FALSE(classNamed("Derived"));
    registerClass(Derived::classObject());
    EXPECT_TRUE(as<Derived>(classNamed("Derived")->alloc()));
    EXPECT_EQ(classNamed("NSDictionary"), &NSDictionary::classObject());
    registerClass(NSBundle::classObject());
    EXPECT_FALSE(classNamed("NSBundle")->alloc()); // abstract
}

TEST(Dictionary, CopiesShareValuesButNotEntries) {
    const auto value = text("v");
    const auto original = dictionary({{"b", value}, {"a", nullptr}, {"", value}});
    const auto copy = original->mutableCopy();
    EXPECT_EQ(original->count(), 2u);
    EXPECT_TRUE(copy->isEqual(original.get()) && original->isEqual(copy.get()));
    EXPECT_EQ(copy->objectForKey("b"), value);
    copy->setObject(text("w"), "b");
    copy->removeObjectForKey("");
    copy->removeObjectForKey("missing");
    EXPECT_EQ(copy->allKeys(), std::vector<std::string>{"b"});
    EXPECT_EQ(original->objectForKey("b"), value);
    EXPECT_FALSE(copy->isEqual(original.get()));
    EXPECT_FALSE(original->isEqual(nullptr));
}

TEST(Scalars, EqualityIsOfMeaningNotOfForm) {
    EXPECT_TRUE(text("\u00e9")->isEqual(text("e\u0301").get()));
    EXPECT_FALSE(text("a")->isEqual(text("A").get()));
    EXPECT_FALSE(text("\xFF")->isEqual(text("\xFE").get()));
    EXPECT_TRUE(number(1LL)->isEqual(number(1.0).get()));
    EXPECT_FALSE(number(1LL)->isEqual(text("1").get()));
    EXPECT_FALSE(number((1LL << 53) + 1)->isEqual(number(1LL << 53).get()));
    EXPECT_FALSE(stringsAreEqual("a\0b"s, "a\0c"s));
    EXPECT_TRUE(localizedCaseInsensitiveLess("arial", "Bold"));
    EXPECT_FALSE(localizedCaseInsensitiveLess("Bold", "arial"));
}

TEST(Bundle, ServesOnlyRegularFilesOfItsOwnDirectory) {
    const test::TemporaryDirectory directory;
    std::filesystem::create_directory(directory.path() / "sub");
    test::writeFile(directory.path() / "file", "a\0b"s);
    ::mkfifo((directory.path() / "fifo").c_str(), 0600);
    const auto bundle = NSBundle::bundleWithPath("test", directory.path());
    EXPECT_EQ(bundle->resource("file"), "a\0b"s);
    for (const char* name : {"", ".", "..", "sub", "sub/../file", "fifo", "missing"})
        EXPECT_FALSE(bundle->resource(name)) << name;
}

} // namespace
} // namespace tesmar
