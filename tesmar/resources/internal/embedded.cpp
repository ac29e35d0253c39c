#include "tesmar/resources/internal/embedded.h"

#include <gio/gio.h>

extern "C" {
#include "resources.gresource.h" // generated, in C
}

namespace tesmar {

std::optional<std::string> embeddedResource(std::string_view fileName) {
    // GIO would resolve path separators, and end the name at a NUL.
    if (fileName.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos)
        return std::nullopt;

    // The getter registers the data at its first call, which is not thread-safe; the initialiser of
    // a static is. The call also makes a linker take the data from a static library. The data's own
    // reference is dropped at exit.
    static GResource* const resource = g_resource_ref(tesmar_get_resource());
    const std::string path = "/tesmar/" + std::string(fileName);
    GBytes* bytes =
        g_resource_lookup_data(resource, path.c_str(), G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr);
    if (!bytes)
        return std::nullopt;
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes, &size));
    std::string content(data, size);
    g_bytes_unref(bytes);
    return content;
}

} // namespace tesmar
