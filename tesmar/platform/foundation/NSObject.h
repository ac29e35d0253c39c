// The root of every class, and the one ownership idiom of the tree.
//
// Objects are shared: a Ref owns, a WeakRef does not. They are made in two steps, as in
//
//     auto view = make<UIView>();                                  // alloc, then init()
//     auto disc = makeWith<UIView>(&UIView::initWithFrame, frame);  // alloc, then another
//     initialiser
//
// The first step builds the object with the initial values of its members; the second runs an
// initialiser while the object is already owned, so that it may hand out weak references to itself
// (a control can wire its buttons to itself while it is being built). An initialiser answers false
// to give up, and `make` then answers null.
//
// Back references (targets, delegates of views, outlets, superviews) are weak. Objects are not
// thread-safe unless their header says so; the user interface belongs to the main thread.
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
    // Rebuilds the object from a coder (see NSCoder); false when the coder's record does not hold
    // what the class needs. The base class takes nothing.
    virtual bool initWithCoder(NSCoder& coder);
    // Writes what initWithCoder reads. A class that overrides this has a coding: archives hold its
    // objects, and make new ones from bytes of any origin, so initWithCoder must do no more than
    // fill in a value. False: archives leave the object out.
    virtual bool encodeWithCoder(NSCoder& coder) const;
    // Called once on every object of an interface file, after all its outlets are connected.
    virtual void awakeFromNib() {}

    // Equality of value where a class defines one, else identity. Null equals nothing.
    virtual bool isEqual(const NSObject* other) const { return this == other; }

    bool isKindOfClass(const Class& type) const;
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

// An owning reference to an object that is known to be owned already (never in a constructor).
template <class T>
Ref<T> ref(T* object) {
    return object ? std::static_pointer_cast<T>(object->shared_from_this()) : nullptr;
}

// The object as a T, or null when it is of another class.
template <class T, class U>
Ref<T> as(const Ref<U>& object) {
    return std::dynamic_pointer_cast<T>(object);
}

// Names the class to the object runtime; its table stands in the class's source file.
#define TESMAR_CLASS                                                                               \
  public:                                                                                          \
    static ::tesmar::Class& classObject();                                                         \
    const ::tesmar::Class& isa() const override {                                                  \
        return classObject();                                                                      \
    }                                                                                              \
                                                                                                   \
  private:

} // namespace tesmar
