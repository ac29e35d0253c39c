#include "tesmar/platform/ui/internal/focus/FocusRing.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr double kSlide = 0.12; // seconds
// Points.
constexpr CGFloat kGap = 1.5;
constexpr CGFloat kWidth = FocusRing::kReach - kGap;

ShownCell between(const ShownCell& a, const ShownCell& b, double progress) {
    const auto mix = [progress](CGFloat x, CGFloat y) { return x + (y - x) * progress; };
    return {{mix(a.frame.minX(), b.frame.minX()), mix(a.frame.minY(), b.frame.minY()),
             mix(a.frame.size.width, b.frame.size.width),
             mix(a.frame.size.height, b.frame.size.height)},
            mix(a.radius, b.radius),
            mix(a.alpha, b.alpha)};
}

// On whole pixels, so that the shapes are drawn from few cached masks.
CGRect onPixels(const CGRect& frame, CGFloat scale) {
    const PixelRect p = snappedToPixels(frame, scale);
    return {p.x / scale, p.y / scale, p.width / scale, p.height / scale};
}

} // namespace

FocusRing::FocusRing(UIWindow& window) : window_(window), progress_(1, [this] { update(); }) {}

void FocusRing::slideTo(const ShownCell& cell) {
    const bool slides = drawn_.has_value();
    from_ = slides ? *drawn_ : cell;
    to_ = cell;
    progress_.jumpTo(slides ? 0 : 1);
    progress_.moveTo(1, kSlide);
    update();
}

void FocusRing::follow(const ShownCell& cell) {
    to_ = cell;
    update();
}

void FocusRing::hide() {
    to_.reset();
    progress_.jumpTo(1);
    update();
}

void FocusRing::update() {
    std::optional<ShownCell> now;
    if (to_)
        now = between(from_, *to_, progress_.value());
    if (now) {
        now->frame = now->frame.isEmpty() ? CGRect{} : onPixels(now->frame, window_.scale());
        if (now->frame.isEmpty() || now->alpha <= 0)
            now.reset();
    }
    if (now == drawn_)
        return;
    damage(drawn_);
    damage(now);
    drawn_ = now;
}

void FocusRing::damage(const std::optional<ShownCell>& cell) {
    if (!cell)
        return;
    // The four sides, with the corners: the inside is not drawn over.
    const CGRect r = CGRectInset(cell->frame, -kReach, -kReach);
    const CGFloat side = kReach + cell->radius;
    const CGFloat width = std::min(side, r.size.width), height = std::min(side, r.size.height);
    for (const CGRect& part : {CGRect{r.minX(), r.minY(), r.size.width, height},
                               CGRect{r.minX(), r.maxY() - height, r.size.width, height},
                               CGRect{r.minX(), r.minY(), width, r.size.height},
                               CGRect{r.maxX() - width, r.minY(), width, r.size.height}})
        window_.damagePixels(window_.surfacePixels(part));
}

CGRect FocusRing::extent() const {
    return drawn_ ? CGRectInset(drawn_->frame, -kReach, -kReach) : CGRect{};
}

void FocusRing::draw() const {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context || !drawn_)
        return;
    const auto frame = [&](CGFloat reach, CGFloat width) {
        context->fillRoundedFrame(CGRectInset(drawn_->frame, -reach, -reach),
                                  drawn_->radius + reach, width);
    };
    context->setRGBFillColor(1, 1, 1, drawn_->alpha);
    frame(kGap + 0.5, kGap + 0.5); // a little below the ring, so that nothing shines through
    context->setRGBFillColor(11 / 255.0, 87 / 255.0, 208 / 255.0, drawn_->alpha);
    frame(kReach, kWidth);
}

} // namespace tesmar
