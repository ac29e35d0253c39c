// Any bytes as a PNG: never a crash, never memory beyond the largest image.
#include "tesmar/platform/graphics/UIImage.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto image = tesmar::UIImage::imageWithPNGData(bytes, 2);
    if (image && image->pixel(image->pixelWidth() - 1, image->pixelHeight() - 1) == 1)
        __builtin_trap(); // blue with an alpha of zero is not premultiplied
    return 0;
}
