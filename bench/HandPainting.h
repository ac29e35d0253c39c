// The panel's picture painted by hand with cairo alone: what a frame costs without views and
// without the library. Text, images and curves are coverage masks that were made in advance, as a
// careful author would keep them; a frame fills rectangles and paints the masks that the damage
// touches.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <cairo.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

class HandPainting {
  public:
    // Takes places and colours from the panel that `window` shows, as they are now.
    explicit HandPainting(tesmar::UIWindow& window);

    // Paints these pixels again. `pixels` has the size of the window's surface, rows `stride` bytes
    // apart.
    void paint(std::uint32_t* pixels, int stride, std::span<const tesmar::PixelRect> damage) const;

  private:
    struct SurfaceDeleter {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    };
    struct Element {
        tesmar::PixelRect place;
        std::unique_ptr<cairo_surface_t, SurfaceDeleter> mask; // null: all of the place is filled
        tesmar::Ref<tesmar::UIColor> color;
    };
    using Drawing = std::function<void(tesmar::CGContext&)>;

    // Elements are added from back to front. Rectangles are in points of the window.
    tesmar::CGRect frame(const std::string& identifier) const;
    tesmar::CGRect frame(const tesmar::UIView& view) const;
    void addFill(tesmar::CGRect rect, const tesmar::Ref<tesmar::UIColor>& color);
    // The coverage of what `drawing` draws, in an opaque colour, inside `rect`.
    void addMask(tesmar::CGRect rect, const tesmar::Ref<tesmar::UIColor>& color,
                 const Drawing& drawing);
    void addCard();
    void addSwitch();
    void addFade(tesmar::CGRect scrollView);
    void addSeparator(const std::string& identifier);
    // What the view itself draws, in one colour.
    void addView(tesmar::UIView& view, const tesmar::Ref<tesmar::UIColor>& color);
    void addSwatches(const std::string& picker);

    tesmar::UIWindow& window_;
    tesmar::PixelRect clip_; // of the elements to add
    std::vector<Element> elements_;
};
