#include "tesmar/platform/foundation/runtime.h"

#include "tesmar/platform/foundation/NSArray.h"
#include "tesmar/platform/foundation/diagnostics.h"

#include <array>
#include <map>
#include <mutex>
#include <set>

namespace tesmar {
namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string_view, const Class*> classes;
    std::set<std::string, std::less<>> selectors;
};

Registry& registry() {
    // Never destroyed: selectors are compared until the very end of the process.
    static Registry* instance = new Registry;
    return *instance;
}

std::string_view interned(std::string_view name) {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    auto found = r.selectors.find(name);
    if (found == r.selectors.end())
        found = r.selectors.emplace(name).first;
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
    } catch (const runtime::ArgumentMismatch& mismatch) {
        fatalError(mismatch.problem);
    }
}

} // namespace

Selector::Selector(std::string_view name) : name_(interned(name)) {}

Class::Class(std::string_view name, const Class* superclass, Allocator allocator,
             std::initializer_list<Method> methods, std::initializer_list<Method> classMethods)
    : name_(name), superclass_(superclass), allocator_(allocator), methods_(methods),
      classMethods_(classMethods) {}

bool Class::isSubclassOf(const Class& other) const {
    for (const Class* type = this; type; type = type->superclass_)
        if (type == &other)
            return true;
    return false;
}

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
    // A registration that was short of memory comes again from its start.
    for (const Method& method : methods)
        if (!findIn(classMethods_, method.selector))
            classMethods_.push_back(method);
}

void registerClass(const Class& type) {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    r.classes.emplace(type.name(), &type);
}

const Class* classNamed(std::string_view name) {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    const auto found = r.classes.find(name);
    return found == r.classes.end() ? nullptr : found->second;
}

Value performSelector(NSObject& object, Selector selector, std::span<const Value> arguments) {
    const auto keptAlive = object.weak_from_this().lock();
    const Class& type = object.isa();
    return invoke(type.findMethod(selector), &object, type.name(), selector, arguments);
}

bool performSelectorIfItFits(NSObject& object, Selector selector,
                             std::span<const Value> arguments) {
    const auto keptAlive = object.weak_from_this().lock();
    const Method* method = object.isa().findMethod(selector);
    if (!method || arguments.size() != selector.argumentCount())
        return false;
    try {
        method->invoke(&object, arguments);
        return true;
    } catch (const runtime::ArgumentMismatch&) {
        return false;
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
    static constexpr const char* kNames[] = {"nothing",   "a Boolean",         "an integer",
                                             "a number",  "a string",          "a rectangle",
                                             "an object", "a list of strings", "a list of numbers"};
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
