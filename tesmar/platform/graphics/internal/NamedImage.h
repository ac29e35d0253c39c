// The files "name.png", "name@2x.png" and "name@3x.png" of a bundle, as pictures for each scale.
// Any thread.
#pragma once

#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/graphics/internal/UIImageImpl.h"

#include <array>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace tesmar {

class NamedImage {
  public:
    // The picture for `scale`, in pixels per point: the one with the smallest scale that is not
    // below it, or else with the largest scale. Null, with a diagnostic, if no file exists or if
    // the chosen one is broken or too large.
    static std::unique_ptr<UIImage::Impl> load(std::string_view name, const NSBundle& bundle,
                                               double scale);

    NamedImage(std::string_view name, const NSBundle& bundle);

    // The same as load(), but made once for each file, and `first` if that is of the same file, or
    // if there is no other. Passes on what the bundle throws; the next call then tries again. Owned
    // by this object.
    const UIImage::Impl& picture(double scale, const UIImage::Impl& first) const;

  private:
    static constexpr std::size_t kVariants = 3;
    struct Slot {
        bool isLoaded = false;
        std::unique_ptr<UIImage::Impl> picture; // null: the first one
    };

    std::string name_;
    Ref<const NSBundle> bundle_;
    mutable std::mutex mutex_;
    mutable std::array<Slot, kVariants> slots_; // for the scales up to 1, up to 2, and beyond
};

} // namespace tesmar
