// An owning pointer to a GObject.
#pragma once

#include <glib-object.h>

#include <memory>

namespace tesmar {

struct GObjectDeleter {
    template <class T>
    void operator()(T* object) const {
        g_object_unref(object);
    }
};
template <class T>
using GObjectPtr = std::unique_ptr<T, GObjectDeleter>;

} // namespace tesmar
