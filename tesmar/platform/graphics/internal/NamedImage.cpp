#include "tesmar/platform/graphics/internal/NamedImage.h"

#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/graphics/internal/png.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace tesmar {
namespace {

struct Variant {
    int scale;
    const char* suffix;
};
constexpr Variant kVariantFiles[] = {{1, ".png"}, {2, "@2x.png"}, {3, "@3x.png"}};

struct ImageFile {
    std::string bytes;
    int scale;
};

std::optional<ImageFile> bestVariant(std::string_view name, const NSBundle& bundle, double scale) {
    const auto load = [&](const Variant& variant) -> std::optional<ImageFile> {
        if (auto bytes = bundle.resource(std::string(name) + variant.suffix))
            return ImageFile{std::move(*bytes), variant.scale};
        return std::nullopt;
    };
    for (const Variant& variant : kVariantFiles)
        if (variant.scale >= scale)
            if (auto file = load(variant))
                return file;
    for (auto variant = std::rbegin(kVariantFiles); variant != std::rend(kVariantFiles); ++variant)
        if (variant->scale < scale)
            if (auto file = load(*variant))
                return file;
    return std::nullopt;
}

void reportMissing(std::string_view name, std::string_view why) {
    diagnostic("image \"" + std::string(name) + "\" " + std::string(why));
}

} // namespace

std::unique_ptr<UIImage::Impl> NamedImage::load(std::string_view name, const NSBundle& bundle,
                                                double scale) {
    const auto file = bestVariant(name, bundle, scale);
    if (!file) {
        reportMissing(name, "is not in bundle \"" + bundle.bundleIdentifier() + "\"");
        return nullptr;
    }
    SurfacePtr pixels = decodePNG(file->bytes);
    if (!pixels) {
        reportMissing(name, "is no PNG file or is too large");
        return nullptr;
    }
    return std::make_unique<UIImage::Impl>(std::move(pixels), file->scale);
}

NamedImage::NamedImage(std::string_view name, const NSBundle& bundle)
    : name_(name), bundle_(refTo(&bundle)) {}

const UIImage::Impl& NamedImage::picture(double scale, const UIImage::Impl& first) const {
    const std::size_t variant = scale <= 1 ? 0 : scale <= 2 ? 1 : 2;
    const double variantScale = kVariantFiles[variant].scale;
    if (first.scale == variantScale)
        return first;
    const std::lock_guard lock(mutex_);
    Slot& slot = slots_[variant];
    if (!slot.isLoaded) {
        slot.picture = load(name_, *bundle_, variantScale); // may throw: the next drawing retries
        slot.isLoaded = true;
        if (slot.picture && slot.picture->scale == first.scale)
            slot.picture = nullptr;
    }
    return slot.picture ? *slot.picture : first;
}

} // namespace tesmar
