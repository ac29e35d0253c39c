// The base of every class, and how objects are made and owned.
//
// Objects are shared: a Ref owns, a WeakRef does not. They are made in two steps, as in
//
//     auto view = make<UIView>();                                  // alloc, then init()
//     auto disc = makeWith<UIView>(&UIView::initWithFrame, frame);  // alloc, then initWithFrame()
//
// The first step constructs the object; the second runs an initialiser while the object is already
// owned, so that the initialiser can hand out references to the object (a control makes itself the
// target of its buttons). An initialiser that fails returns false; `make` then returns null.
//
// Back references (targets, delegates of views, outlets, superviews) are weak. Objects are not
// thread-safe unless their header says so; user interface objects belong to the main thread.
#pragma once

#include "tesmar/platform/foundation/export.h"

#include <memory>
#include <string>
#include <utility>

namespace tesmar {

template <class T>
using Ref = std::shared_ptr<T>;
template <class T>
using WeakRef = std::weak_ptr<T>;

class Class;
class NSCoder;
class Selector;

class TESMAR_API NSObject : public std::enable_shared_from_this<NSObject> {
  public:
    NSObject() = default;
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;
    virtual ~NSObject() = default;

    static Class& classObject();
    // The object's own class.
    virtual const Class& isa() const;

    virtual bool init() { return true; }
    // Initialises the object from a coder (see NSCoder); false when the coder lacks a value that
    // the class needs. The base class reads nothing.
    virtual bool initWithCoder(NSCoder& coder);
    // Writes what initWithCoder reads; false when the object cannot be archived, and the archive
    // then leaves it out. Only a class that overrides this has a coding. Archives create objects of
    // such a class from untrusted bytes, so its initWithCoder must only set its own values.
    virtual bool encodeWithCoder(NSCoder& coder) const;
    // Called once on every object of an interface file, after all its outlets are connected.
    virtual void awakeFromNib() {}

    // Equality by value where a class defines it, else identity. False for null.
    virtual bool isEqual(const NSObject* other) const { return this == other; }

    // Whether the object's class or a superclass publishes the selector.
    bool respondsToSelector(Selector selector) const;
};

template <class T>
Ref<T> alloc() {
    return std::make_shared<T>();
}

template <class T>
Ref<T> make() {
    auto object = alloc<T>();
    return object->init() ? object : nullptr;
}

template <class T, class Initialiser, class... Arguments>
Ref<T> makeWith(Initialiser initialiser, Arguments&&... arguments) {
    auto object = alloc<T>();
    return ((*object).*initialiser)(std::forward<Arguments>(arguments)...) ? object : nullptr;
}

// An owning reference to an object that a Ref already owns; null for null. Throws
// std::bad_weak_ptr for other objects, such as one under construction or destruction.
template <class T>
Ref<T> refTo(T* object) {
    return object ? std::static_pointer_cast<T>(object->shared_from_this()) : nullptr;
}

// The object as a T; null when it is not one.
template <class T, class U>
Ref<T> as(const Ref<U>& object) {
    return std::dynamic_pointer_cast<T>(object);
}

// Declares what the object runtime needs of a class; its table is in the class's source file.
#define TESMAR_CLASS                                                                               \
  public:                                                                                          \
    static ::tesmar::Class& classObject();                                                         \
    const ::tesmar::Class& isa() const override {                                                  \
        return classObject();                                                                      \
    }                                                                                              \
                                                                                                   \
  private:

} // namespace tesmar
