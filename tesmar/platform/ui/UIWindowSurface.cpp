// The pixels of a window: what of them is out of date, and painting them.
#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/CurrentContext.h"
#include "tesmar/platform/ui/internal/DamageHistory.h"
#include "tesmar/platform/ui/internal/HoverMark.h"
#include "tesmar/platform/ui/internal/PassThroughView.h"
#include "tesmar/platform/ui/internal/PresentationStack.h"
#include "tesmar/platform/ui/internal/focus/KeyFocus.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tesmar {
namespace {

// Whether the rows of a surface lie within `bytes` bytes.
bool fits(const PixelRect& surface, int stride, std::size_t bytes) {
    const long long row = 4LL * surface.width;
    return !surface.isEmpty() && stride >= row && stride % 4 == 0 &&
           bytes >= static_cast<std::size_t>((surface.height - 1LL) * stride + row);
}

} // namespace

PixelRect UIWindow::surfacePixels(const CGRect& rect) const {
    const CGSize size = pixelSize();
    const PixelRect surface{0, 0, static_cast<int>(size.width), static_cast<int>(size.height)};
    return intersection(pixelsTouchedBy(rect, scale_), surface);
}

void UIWindow::damagePixels(const PixelRect& pixels) {
    if (pixels.isEmpty())
        return;
    damage_->add(pixels);
    NSRunLoop::mainRunLoop().wake();
}

bool UIWindow::isDamagedWholly() const {
    const auto rects = damage_->rects();
    return rects.size() == 1 && rects[0] == surfacePixels(bounds());
}

void UIWindow::invalidate() {
    assertMainThread("UIWindow::invalidate");
    damage_->clear();
    damagePixels(surfacePixels(bounds()));
}

void UIWindow::prepareFrame() {
    avoidCaptions();
    layoutIfNeeded();
    followHover();
    if (focus_)
        focus_->follow();
}

void UIWindow::drawOverlay(CGRect) {
    if (hover_)
        hover_->draw();
    if (focus_)
        focus_->draw();
}

bool UIWindow::needsRender() {
    assertMainThread("UIWindow::needsRender");
    const auto self = refTo(this);
    const NSRunLoop::Turn turn(NSRunLoop::mainRunLoop());
    prepareFrame();
    return !damage_->isEmpty();
}

std::span<const PixelRect> UIWindow::render(std::span<std::uint32_t> pixels, int stride,
                                            int bufferAge) {
    assertMainThread("UIWindow::render");
    const auto self = refTo(this);
    std::optional<NSRunLoop::Turn> turn(NSRunLoop::mainRunLoop());
    prepareFrame();
    const PixelRect surface = surfacePixels(bounds());
    DamageRegion painted;
    if (fits(surface, stride, pixels.size_bytes())) {
        // Damage that is reported during painting belongs to the next frame.
        DamageRegion changed;
        std::swap(changed, *damage_);
        if (const auto lacked = history_->lackedBy(bufferAge, changed))
            painted = *lacked;
        else
            painted.add(surface);
        try {
            paintRects(pixels.data(), stride, painted.rects());
        } catch (...) {
            for (const PixelRect& rect : changed.rects())
                damage_->add(rect);
            throw;
        }
        history_->add(changed);
        presentations_->noteFrame();
    }
    *repainted_ = painted;
    turn.reset();
    if (!damage_->isEmpty() && !painted.isEmpty())
        NSRunLoop::mainRunLoop().wake(); // drawing has asked for another frame
    return repainted_->rects();
}

PixelRect UIWindow::visibleBounds() {
    assertMainThread("UIWindow::visibleBounds");
    const auto self = refTo(this);
    const NSRunLoop::Turn turn(NSRunLoop::mainRunLoop());
    prepareFrame();
    CGRect extent = focus_ ? focus_->extent() : CGRect{};
    const auto include = [&](const std::vector<Ref<UIView>>& views) {
        for (const auto& view : views)
            extent = CGRectUnion(extent, view->shownExtent(scale_));
    };
    for (const auto& view : subviews()) {
        const bool drawsNothing =
            !view->backgroundColor() && dynamic_cast<const PassThroughView*>(view.get());
        include(drawsNothing ? view->subviews() : std::vector{view});
    }
    return extent.isEmpty() ? PixelRect{} : surfacePixels(extent);
}

bool UIWindow::repaint(std::span<std::uint32_t> pixels, int stride,
                       std::span<const PixelRect> rects) {
    assertMainThread("UIWindow::repaint");
    const auto self = refTo(this);
    const NSRunLoop::Turn turn(NSRunLoop::mainRunLoop());
    prepareFrame();
    const PixelRect surface = surfacePixels(bounds());
    if (!fits(surface, stride, pixels.size_bytes()))
        return false;
    DamageRegion painted;
    for (const PixelRect& rect : rects)
        painted.add(intersection(rect, surface));
    paintRects(pixels.data(), stride, painted.rects());
    return true;
}

void UIWindow::paintRects(std::uint32_t* pixels, int stride, std::span<const PixelRect> rects) {
    const CGSize size = pixelSize();
    auto owned = context_ ? std::move(context_) : std::make_unique<CGContext>();
    CGContext& context = *owned;
    context.drawInto(pixels, static_cast<int>(size.width), static_cast<int>(size.height), stride,
                     scale_);
    {
        const CurrentContext current(context);
        for (const PixelRect& rect : rects) {
            context.saveGState();
            context.clipToPixels(rect);
            context.clearPixels(rect);
            paint(context, {});
            context.restoreGState();
        }
    }
    context.finish();
    context_ = std::move(owned);
}

} // namespace tesmar
