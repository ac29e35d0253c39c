#include "tesmar/resources/internal/embedded.h"

#include <gio/gio.h>

extern "C" {
#include "resources.gresource.h" // generated, in C
}

namespace tesmar {

std::optional<std::string> embeddedResource(std::string_view fileName) {
    // What is no single path element would be resolved as one, or be cut at its NUL.
    if (fileName.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos)
        return std::nullopt;

    // Once, guarded: the getter registers the data at its first call, and threads that come there
    // together crash in it. Naming it is also what keeps the data in a static archive.
    static GResource* const resource = tesmar_get_resource();
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
