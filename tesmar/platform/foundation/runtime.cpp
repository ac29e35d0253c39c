#include "tesmar/platform/foundation/runtime.h"

#include "tesmar/platform/foundation/NSArray.h"
#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/scalars.h"

#include <array>
#include <map>
#include <mutex>
#include <set>

namespace tesmar {
namespace {

// The arguments of a message do not match the parameters of its operation.
struct ArgumentMismatch {
    std::string problem;
};

// Neither registry is ever destroyed: messages may be sent until the process ends.
struct Classes {
    // The classes that an archive of plain values names.
    Classes() {
        for (const Class* type :
             {&NSObject::classObject(), &NSString::classObject(), &NSNumber::classObject(),
              &NSData::classObject(), &NSArray::classObject(), &NSDictionary::classObject(),
              &NSMutableDictionary::classObject()})
            byName.emplace(type->name(), type);
    }
    std::mutex mutex;
    std::map<std::string_view, const Class*> byName;
};

Classes& classes() {
    static auto* const instance = new Classes;
    return *instance;
}

struct SelectorNames {
    std::mutex mutex;
    std::set<std::string, std::less<>> names;
};

std::string_view interned(std::string_view name) {
    static auto* const known = new SelectorNames;
    const std::lock_guard lock(known->mutex);
    auto found = known->names.find(name);
    if (found == known->names.end())
        found = known->names.emplace(name).first;
    return *found;
}

const Method* findIn(const std::vector<Method>& methods, Selector selector) {
    for (const Method& method : methods)
        if (method.selector == selector)
            return &method;
    return nullptr;
}

Value invoke(const Method* method, NSObject* self, std::string_view className, Selector selector,
             std::span<const Value> arguments) {
    if (!method)
        fatalError("unrecognized selector \"" + std::string(selector.name()) + "\" sent to " +
                   std::string(className));
    if (arguments.size() != selector.argumentCount())
        fatalError("selector \"" + std::string(selector.name()) + "\" takes " +
                   std::to_string(selector.argumentCount()) + " arguments, not " +
                   std::to_string(arguments.size()));
    try {
        return method->invoke(self, arguments);
    } catch (const ArgumentMismatch& mismatch) {
        fatalError(mismatch.problem);
    }
}

} // namespace

Selector::Selector(std::string_view name) : name_(interned(name)) {}

Class::Class(std::string_view name, const Class* superclass, Allocator allocator,
             std::initializer_list<Method> methods, std::initializer_list<Method> classMethods)
    : name_(name), superclass_(superclass), allocator_(allocator), methods_(methods),
      classMethods_(classMethods) {}

std::vector<std::string> Class::publishedSelectors() const {
    std::vector<std::string> names;
    for (const Method& method : methods_)
        names.emplace_back(method.selector.name());
    return names;
}

const Method* Class::findMethod(Selector selector) const {
    for (const Class* type = this; type; type = type->superclass_)
        if (const Method* method = findIn(type->methods_, selector))
            return method;
    return nullptr;
}

const Method* Class::findClassMethod(Selector selector) const {
    for (const Class* type = this; type; type = type->superclass_)
        if (const Method* method = findIn(type->classMethods_, selector))
            return method;
    return nullptr;
}

void Class::addClassMethods(std::initializer_list<Method> methods) {
    // A registration that ran out of memory is repeated from its start.
    for (const Method& method : methods)
        if (!findIn(classMethods_, method.selector))
            classMethods_.push_back(method);
}

void registerClass(const Class& type) {
    Classes& known = classes();
    const std::lock_guard lock(known.mutex);
    known.byName.emplace(type.name(), &type);
}

const Class* classNamed(std::string_view name) {
    Classes& known = classes();
    const std::lock_guard lock(known.mutex);
    const auto found = known.byName.find(name);
    return found == known.byName.end() ? nullptr : found->second;
}

Value performSelector(NSObject& object, Selector selector, std::span<const Value> arguments) {
    const auto owner = object.weak_from_this().lock();
    const Class& type = object.isa();
    return invoke(type.findMethod(selector), &object, type.name(), selector, arguments);
}

std::optional<Value> performSelectorIfItFits(NSObject& object, Selector selector,
                                             std::span<const Value> arguments) {
    const auto owner = object.weak_from_this().lock();
    const Method* method = object.isa().findMethod(selector);
    if (!method || arguments.size() != selector.argumentCount())
        return std::nullopt;
    try {
        return method->invoke(&object, arguments);
    } catch (const ArgumentMismatch&) {
        return std::nullopt;
    }
}

Value performClassSelector(const Class& type, Selector selector, std::span<const Value> arguments) {
    return invoke(type.findClassMethod(selector), nullptr, type.name(), selector, arguments);
}

void performAction(NSObject& target, Selector action, const Ref<NSObject>& sender) {
    const std::array<Value, 1> arguments{sender};
    performSelector(target, action,
                    std::span(arguments).first(std::min<std::size_t>(action.argumentCount(), 1)));
}

namespace runtime {

void valueMismatch(const char* expected, const Value& value) {
    static constexpr const char* kNames[] = {"nothing",           "a Boolean",        "a number",
                                             "a string",          "a rectangle",      "an object",
                                             "a list of strings", "a list of numbers"};
    throw ArgumentMismatch{std::string("a message argument should be ") + expected + " but is " +
                           kNames[value.index()]};
}

Ref<NSObject> arrayValue(std::vector<Ref<NSObject>> elements) {
    return NSArray::arrayWithObjects(std::move(elements));
}

std::vector<Ref<NSObject>> arrayElements(const Ref<NSObject>& array) {
    const auto list = as<NSArray>(array);
    if (!list)
        throw ArgumentMismatch{"a message argument should be an array"};
    return list->objects();
}

} // namespace runtime

} // namespace tesmar
