#include "tesmar/platform/graphics/internal/png.h"

#include "tesmar/platform/graphics/internal/CGContextImpl.h"

#include <cstring>

namespace tesmar {
namespace {

// A PNG starts with its signature and the IHDR chunk, which has a length, a type, the width and the
// height.
constexpr std::string_view kStart("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
constexpr std::size_t kHeaderSize = kStart.size() + 8;

std::uint32_t bigEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]);
    return value;
}

bool hasBoundedSize(std::string_view bytes, int mostPixels) {
    if (bytes.size() < kHeaderSize || !bytes.starts_with(kStart))
        return false;
    const std::uint64_t width = bigEndian(bytes.substr(kStart.size()));
    const std::uint64_t height = bigEndian(bytes.substr(kStart.size() + 4));
    return width > 0 && height > 0 && width <= UIImage::kMaximumSide &&
           height <= UIImage::kMaximumSide && width * height <= static_cast<unsigned>(mostPixels);
}

// The PNG without the chunks that do not affect its pixels, such as texts and profiles: the decoder
// would decompress them, up to a thousand times their size in the file, for nothing.
std::string pictureChunks(std::string_view bytes) {
    constexpr std::size_t kSignatureSize = 8,
                          kChunkFrame = 12; // bytes of length, type and checksum
    constexpr char kAncillary = 0x20;
    std::string chunks(bytes.substr(0, kSignatureSize));
    bytes.remove_prefix(kSignatureSize);
    while (bytes.size() >= kChunkFrame) {
        const std::size_t size = kChunkFrame + std::size_t{bigEndian(bytes)};
        const std::string_view chunk = bytes.substr(0, size);
        const std::string_view type = chunk.substr(4, 4);
        if (!(type.front() & kAncillary) || type == "tRNS")
            chunks += chunk;
        bytes.remove_prefix(chunk.size());
    }
    return chunks;
}

cairo_status_t readBytes(void* closure, unsigned char* data, unsigned int length) {
    auto& rest = *static_cast<std::string_view*>(closure);
    if (rest.size() < length)
        return CAIRO_STATUS_READ_ERROR;
    std::memcpy(data, rest.data(), length);
    rest.remove_prefix(length);
    return CAIRO_STATUS_SUCCESS;
}

cairo_status_t writeBytes(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

} // namespace

SurfacePtr decodePNG(std::string_view bytes, int mostPixels) {
    if (!hasBoundedSize(bytes, mostPixels))
        return nullptr;
    const std::string chunks = pictureChunks(bytes);
    std::string_view rest = chunks;
    SurfacePtr decoded(cairo_image_surface_create_from_png_stream(readBytes, &rest));
    if (cairo_surface_status(decoded.get()) != CAIRO_STATUS_SUCCESS)
        return nullptr;
    if (cairo_image_surface_get_format(decoded.get()) == CAIRO_FORMAT_ARGB32)
        return decoded;
    // Cairo decodes opaque images and those with 16 bits per channel to other formats.
    return renderedSurface(CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(decoded.get()),
                           cairo_image_surface_get_height(decoded.get()), 0, 0, [&](cairo_t* cr) {
                               cairo_set_source_surface(cr, decoded.get(), 0, 0);
                               cairo_paint(cr);
                           });
}

std::optional<std::string> encodePNG(cairo_surface_t* surface) {
    std::string bytes;
    if (cairo_surface_write_to_png_stream(surface, writeBytes, &bytes) != CAIRO_STATUS_SUCCESS)
        return std::nullopt;
    return bytes;
}

} // namespace tesmar
