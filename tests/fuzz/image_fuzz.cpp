// Loads any bytes as a named image: no crash, and no image larger than the limits.
#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/graphics/UIImage.h"

#include <cstdlib>

using namespace tesmar;

namespace {

std::uint32_t checksum(std::string_view bytes) {
    std::uint32_t sum = ~0u;
    for (const unsigned char byte : bytes) {
        sum ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ (sum & 1 ? 0xEDB88320 : 0);
    }
    return ~sum;
}

// Corrects the checksums, because the decoder rejects chunks with a wrong one at once.
void fixChecksums(std::string& png) {
    const auto byte = [&](std::size_t at) -> std::size_t {
        return static_cast<unsigned char>(png[at]);
    };
    for (std::size_t at = 8; at + 12 <= png.size();) {
        const std::size_t length =
            byte(at) << 24 | byte(at + 1) << 16 | byte(at + 2) << 8 | byte(at + 3);
        if (length > png.size() - at - 12)
            return;
        const std::uint32_t sum = checksum(std::string_view(png).substr(at + 4, length + 4));
        for (std::size_t i = 0; i < 4; ++i)
            png[at + 8 + length + i] = static_cast<char>(sum >> (24 - 8 * i));
        at += 12 + length;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string bytes(reinterpret_cast<const char*>(data), size);
    fixChecksums(bytes);
    const auto bundle = NSBundle::bundle("fuzz", [&](std::string_view fileName) {
        return fileName == "x@2x.png" ? std::optional(bytes) : std::nullopt;
    });
    const auto image = UIImage::imageNamedFrom("x", *bundle);
    if (!image)
        return 0;
    const std::uint32_t last = image->pixel(image->pixelWidth() - 1, image->pixelHeight() - 1);
    const std::uint32_t alpha = last >> 24;
    if (image->pixelWidth() > UIImage::kMaximumPixels / image->pixelHeight() ||
        (last & 0xFF) > alpha || (last >> 8 & 0xFF) > alpha || (last >> 16 & 0xFF) > alpha)
        std::abort(); // too large, or not premultiplied
    return 0;
}
