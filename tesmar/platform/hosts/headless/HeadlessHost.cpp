#include "tesmar/platform/hosts/headless/HeadlessHost.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIImage.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace tesmar {
namespace {

// Seconds.
constexpr double kLongestWait = 1e9;
constexpr double kLongestDrag = 3600;

} // namespace

HeadlessHost::HeadlessHost(CGSize size, CGFloat scale)
    : window_(UIWindow::windowWithSize(size, scale)), start_(NSRunLoop::mainRunLoop().now()) {
    allocate();
}

void HeadlessHost::resize(CGSize size, CGFloat scale) {
    window_->setSize(size);
    window_->setScale(scale);
    allocate();
}

void HeadlessHost::allocate() {
    const CGSize size = window_->pixelSize();
    // Not a vector, which would write every pixel once more: the system's memory is 0 already.
    const auto count = static_cast<std::size_t>(size.width * size.height);
    auto* const pixels = static_cast<std::uint32_t*>(std::calloc(count, sizeof(std::uint32_t)));
    if (!pixels && count > 0)
        throw std::bad_alloc();
    pixels_.reset(pixels);
    width_ = static_cast<int>(size.width);
    height_ = static_cast<int>(size.height);
    window_->invalidate();
}

void HeadlessHost::advance(double seconds) {
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    const double end = start_ + now_ + finite(seconds, 0, kLongestWait, 0);
    for (auto due = loop.nextDeadline(); due && *due < end; due = loop.nextDeadline()) {
        now_ = std::max(now_, *due - start_);
        loop.advanceTo(*due);
    }
    now_ = end - start_;
    loop.advanceTo(end);
}

bool HeadlessHost::touch(UITouchPhase phase, CGPoint point, std::int64_t id) {
    return window_->touch(phase, id, point, start_ + now_);
}

bool HeadlessHost::key(UIKey key, UIKeyRepeat repeat) {
    return window_->key(key, repeat, start_ + now_);
}

void HeadlessHost::tap(CGPoint point, std::int64_t id) {
    touch(UITouchPhase::began, point, id);
    touch(UITouchPhase::ended, point, id);
}

void HeadlessHost::drag(CGPoint start, CGPoint distance, double seconds, std::int64_t id) {
    seconds = finite(seconds, 0, kLongestDrag, 0);
    const int steps =
        std::max(1, static_cast<int>(std::lround(seconds / NSRunLoop::kDefaultFrameInterval)));
    touch(UITouchPhase::began, start, id);
    CGPoint at = start;
    for (int i = 1; i <= steps; ++i) {
        advance(seconds / steps);
        at = {start.x + distance.x * i / steps, start.y + distance.y * i / steps};
        touch(UITouchPhase::moved, at, id);
    }
    touch(UITouchPhase::ended, at, id);
}

std::span<const PixelRect> HeadlessHost::render() {
    if (!window_->needsRender())
        return {};
    // The window may have been resized directly, or by a resize() that threw.
    if (window_->pixelSize() != CGSize{static_cast<CGFloat>(width_), static_cast<CGFloat>(height_)})
        allocate();
    return window_->render({pixels_.get(), pixelCount()}, width_ * 4);
}

bool HeadlessHost::writePNG(const std::string& path, const Ref<UIColor>& backdrop) {
    render();
    std::vector<std::uint32_t> picture(pixelCount());
    if (backdrop) {
        CGContext context(picture.data(), width_, height_, width_ * 4, 1);
        context.setFillColor(*backdrop->colorWithAlphaComponent(1));
        context.fillRect({0, 0, static_cast<CGFloat>(width_), static_cast<CGFloat>(height_)});
    }
    return writeOver(path, std::move(picture));
}

bool HeadlessHost::writePNG(const std::string& path, std::span<const std::uint32_t> backdrop) {
    render();
    if (backdrop.size() != pixelCount())
        return false;
    std::vector<std::uint32_t> picture(backdrop.begin(), backdrop.end());
    for (std::uint32_t& pixel : picture)
        pixel |= 0xFF000000; // a backdrop is opaque
    return writeOver(path, std::move(picture));
}

bool HeadlessHost::writeOver(const std::string& path, std::vector<std::uint32_t> picture) const {
    const int stride = width_ * 4;
    CGContext(picture.data(), width_, height_, stride, 1)
        .drawPixels(pixels_.get(), {0, 0, width_, height_}, stride);
    return tesmar::writePNG(path, picture.data(), width_, height_, stride);
}

} // namespace tesmar
