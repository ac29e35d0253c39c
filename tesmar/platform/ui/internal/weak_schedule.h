// Delayed work of objects that may be destroyed before it is due.
#pragma once

#include "tesmar/platform/foundation/NSRunLoop.h"

#include <cstdint>
#include <utility>

namespace tesmar {

// Calls `work(object)` once, `delay` seconds from now on the main run loop, unless `object` has
// been destroyed by then; the object stays alive during the call. Returns an identifier for
// NSRunLoop::cancel. Throws std::bad_alloc, and schedules nothing, when allocation fails.
template <class T, class Work>
std::uint64_t scheduleWeakly(T& object, double delay, Work work) {
    const WeakRef<NSObject> weak = object.weak_from_this();
    return NSRunLoop::mainRunLoop().schedule(delay, [weak, work = std::move(work)] {
        if (const auto self = as<T>(weak.lock()))
            work(*self);
    });
}

} // namespace tesmar
