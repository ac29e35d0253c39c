// The object runtime: classes by name, and operations by selector.
//
// Each class lists its name, its superclass and its published selectors, in order, in one table in
// its source file:
//
//     Class& Lamp::classObject() {
//         static Class& type = *new Class("Lamp", &NSObject::classObject(), allocator<Lamp>(),
//                           {method<&Lamp::brightness>("brightness"),
//                            method<&Lamp::setBrightness>("setBrightness:")});
//         return type;
//     }
//
// Target-action, delayed messages, the outlets of interface files and calls from other languages go
// through these tables; an operation that is in no table cannot be reached by name. The table of a
// toolkit class lists only what these send to it.
//
// The classes that archives of plain values consist of (NSString, NSDictionary …) are registered
// from the start, every other class by an explicit call: a linker drops static constructors of
// object files in a static library that nothing refers to.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/foundation/selector.h"
#include "tesmar/platform/foundation/value.h"

#include <concepts>
#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

namespace tesmar {

struct Method {
    Selector selector;
    // `self` is null for a class operation. `arguments` holds one value for each colon.
    Value (*invoke)(NSObject* self, std::span<const Value> arguments);
};

class TESMAR_API Class {
  public:
    struct Allocator {
        Ref<NSObject> (*make)() = nullptr; // null for abstract classes
        bool hasCoding = false;
    };

    // `superclass` is null for the root alone. `allocator` is allocator<T>(), or {} for an abstract
    // class.
    Class(std::string_view name, const Class* superclass, Allocator allocator,
          std::initializer_list<Method> methods = {},
          std::initializer_list<Method> classMethods = {});
    Class(const Class&) = delete;
    Class& operator=(const Class&) = delete;

    std::string_view name() const { return name_; }
    const Class* superclass() const { return superclass_; }

    // A new object on which no initialiser has run; null for an abstract class.
    Ref<NSObject> alloc() const { return allocator_.make ? allocator_.make() : nullptr; }
    // Whether objects of the class write themselves into archives. An archive may come from
    // anywhere, so decoding one makes objects of such classes only.
    bool hasCoding() const { return allocator_.hasCoding; }

    // The selectors of this class's own table, in the published order.
    std::vector<std::string> publishedSelectors() const;

    // The operation of this class or its nearest superclass that publishes the selector; null when
    // none does.
    const Method* findMethod(Selector selector) const;
    const Method* findClassMethod(Selector selector) const;

    // Adds class operations that a higher layer defines; selectors that the class has already are
    // skipped. Not thread-safe: call it while registering classes.
    void addClassMethods(std::initializer_list<Method> methods);

  private:
    std::string_view name_;
    const Class* superclass_;
    Allocator allocator_;
    std::vector<Method> methods_;
    std::vector<Method> classMethods_;
};

// Makes a class known by name. Registering it again changes nothing. Any thread.
TESMAR_API void registerClass(const Class& type);
// Null when no class of that name has been registered. Any thread.
TESMAR_API const Class* classNamed(std::string_view name);

// Sends a message and returns its result. A selector that the object's class does not publish, or
// arguments that do not match its parameters, are fatal errors. The object is kept alive until the
// call returns.
TESMAR_API Value performSelector(NSObject& object, Selector selector,
                                 std::span<const Value> arguments = {});
// The same for messages that untrusted input names: returns nothing, without calling anything, when
// the class does not publish the selector or the arguments do not match its parameters.
TESMAR_API std::optional<Value> performSelectorIfItFits(NSObject& object, Selector selector,
                                                        std::span<const Value> arguments);
// Calls a class operation; misuse is a fatal error as for performSelector.
TESMAR_API Value performClassSelector(const Class& type, Selector selector,
                                      std::span<const Value> arguments = {});

// Sends an action message. The selector takes no argument, or one: the sender.
TESMAR_API void performAction(NSObject& target, Selector action, const Ref<NSObject>& sender);

// A class has a coding when it, or a superclass of it, overrides encodeWithCoder.
template <class T>
Class::Allocator allocator() {
    return {[] { return Ref<NSObject>(tesmar::alloc<T>()); },
            !std::same_as<decltype(&T::encodeWithCoder), decltype(&NSObject::encodeWithCoder)>};
}

namespace runtime {

// The argument for a parameter that is a C++ reference must be an object: null is a mismatch.
template <class Parameter>
decltype(auto) argument(const Value& value) {
    using T = std::remove_cvref_t<Parameter>;
    if constexpr (std::is_lvalue_reference_v<Parameter> && std::derived_from<T, NSObject>) {
        const auto object = fromValue<Ref<T>>(value);
        if (!object)
            valueMismatch("an object", value);
        return static_cast<T&>(*object); // owned by the value
    } else {
        return fromValue<Parameter>(value);
    }
}

template <class Result, class Call>
Value resultOf(Call&& call) {
    if constexpr (std::is_void_v<Result>) {
        call();
        return {};
    } else {
        return toValue(call());
    }
}

template <auto Operation, class Self, class Result, class... Arguments, std::size_t... I>
Value invokeMember(NSObject* self, std::span<const Value> arguments, std::index_sequence<I...>) {
    auto& object = dynamic_cast<Self&>(*self);
    return resultOf<Result>(
        [&]() -> Result { return (object.*Operation)(argument<Arguments>(arguments[I])...); });
}

template <auto Operation, class Result, class... Arguments, std::size_t... I>
Value invokeFree(std::span<const Value> arguments, std::index_sequence<I...>) {
    return resultOf<Result>(
        [&]() -> Result { return Operation(argument<Arguments>(arguments[I])...); });
}

template <auto Operation, class Self, class Result, class... Arguments>
constexpr auto memberInvoker() {
    return +[](NSObject* self, std::span<const Value> arguments) {
        return invokeMember<Operation, Self, Result, Arguments...>(
            self, arguments, std::index_sequence_for<Arguments...>{});
    };
}

template <auto Operation, class Self, class Result, class... Arguments>
constexpr auto invokerOf(Result (Self::*)(Arguments...)) {
    return memberInvoker<Operation, Self, Result, Arguments...>();
}

template <auto Operation, class Self, class Result, class... Arguments>
constexpr auto invokerOf(Result (Self::*)(Arguments...) const) {
    return memberInvoker<Operation, Self, Result, Arguments...>();
}

template <auto Operation, class Result, class... Arguments>
constexpr auto invokerOf(Result (*)(Arguments...)) {
    return +[](NSObject*, std::span<const Value> arguments) {
        return invokeFree<Operation, Result, Arguments...>(arguments,
                                                           std::index_sequence_for<Arguments...>{});
    };
}

} // namespace runtime

// A row of a class table: a member function, or for a class operation a static one, and its
// selector.
template <auto Operation>
Method method(std::string_view selector) {
    return {Selector(selector), runtime::invokerOf<Operation>(Operation)};
}

} // namespace tesmar
