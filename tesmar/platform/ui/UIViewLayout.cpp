// How views find their places: constraints, sizes that content wants, and the layout pass.
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/layout/internal/LayoutEngine.h"
#include "tesmar/platform/ui/UIView.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>

namespace tesmar {
namespace {

// A layoutSubviews that keeps asking for another pass must not hang the host.
constexpr int kMostPasses = 8;

std::size_t index(LayoutAxis axis) {
    return axis == LayoutAxis::horizontal ? 0 : 1;
}

} // namespace

void UIView::setTranslatesAutoresizingMaskIntoConstraints(bool translates) {
    if (translates == framesAreGiven_)
        return;
    framesAreGiven_ = translates;
    layoutNeedsUpdate();
}

void UIView::addConstraint(const Ref<NSLayoutConstraint>& constraint) {
    if (!constraint)
        return;
    constraints_.push_back(constraint);
    layoutNeedsUpdate();
}

void UIView::addConstraints(const std::vector<Ref<NSLayoutConstraint>>& constraints) {
    for (const auto& constraint : constraints)
        addConstraint(constraint);
}

void UIView::removeConstraint(const Ref<NSLayoutConstraint>& constraint) {
    std::erase(constraints_, constraint);
    layoutNeedsUpdate();
}

CGSize UIView::intrinsicContentSize() const {
    return {UIViewNoIntrinsicMetric, UIViewNoIntrinsicMetric};
}

void UIView::invalidateIntrinsicContentSize() {
    layoutNeedsUpdate();
}

double UIView::contentHuggingPriority(LayoutAxis axis) const {
    return hugging_[index(axis)];
}

void UIView::setContentHuggingPriority(double priority, LayoutAxis axis) {
    hugging_[index(axis)] = finite(priority, 0, 1000, 250);
    layoutNeedsUpdate();
}

double UIView::contentCompressionResistancePriority(LayoutAxis axis) const {
    return compression_[index(axis)];
}

void UIView::setContentCompressionResistancePriority(double priority, LayoutAxis axis) {
    compression_[index(axis)] = finite(priority, 0, 1000, 750);
    layoutNeedsUpdate();
}

std::optional<CGFloat> UIView::layoutIntrinsicExtent(LayoutAxis axis) const {
    const CGSize size = intrinsicContentSize();
    const CGFloat extent = axis == LayoutAxis::horizontal ? size.width : size.height;
    if (extent == UIViewNoIntrinsicMetric)
        return std::nullopt;
    return finite(extent, 0, kLargestCoordinate, 0);
}

double UIView::layoutHuggingPriority(LayoutAxis axis) const {
    return contentHuggingPriority(axis);
}

double UIView::layoutCompressionPriority(LayoutAxis axis) const {
    return contentCompressionResistancePriority(axis);
}

std::string UIView::layoutName() const {
    const std::string name(isa().name());
    return identifier_.empty() ? name : name + " \"" + identifier_ + "\"";
}

CGSize UIView::systemLayoutSizeFittingSize(CGSize target) {
    return LayoutEngine::fittingSize(*this, target);
}

CGSize UIView::sizeThatFits(CGSize) const {
    const CGSize wish = intrinsicContentSize();
    return {wish.width == UIViewNoIntrinsicMetric ? frame_.size.width : wish.width,
            wish.height == UIViewNoIntrinsicMetric ? frame_.size.height : wish.height};
}

void UIView::sizeToFit() {
    setFrame({frame_.origin, sizeThatFits(frame_.size)});
}

UIView& UIView::layoutRoot() {
    UIView* view = this;
    while (view->superview_ && !view->superview_->subviewsAreLayoutRoots())
        view = view->superview_;
    return *view;
}

void UIView::setNeedsLayout() {
    assertMainThread("UIView::setNeedsLayout");
    needsLayout_ = true;
    layoutRoot().treeNeedsLayout_ = true;
}

void UIView::layoutNeedsUpdate() {
    assertMainThread("UIView::setNeedsLayout");
    UIView& root = layoutRoot();
    root.treeNeedsLayout_ = true;
    ++root.layoutChanges_;
    if (root.engine_)
        root.engine_->invalidate();
}

void UIView::setLayoutFrame(const CGRect& frame) {
    if (finiteRect(frame) != frame_)
        applyFrame(finiteRect(frame));
}

void UIView::layoutIfNeeded() {
    assertMainThread("UIView::layoutIfNeeded");
    const auto kept = ref(this);
    layoutRoot().layoutTree();
}

void UIView::layoutTree() {
    const auto kept = weak_from_this().lock();
    if (subviewsAreLayoutRoots()) {
        layoutOwnSubviews();
        for (std::size_t i = 0; i < subviews_.size(); ++i)
            Ref<UIView>(subviews_[i])->layoutTree();
        return;
    }
    for (int pass = 0; treeNeedsLayout_ && pass < kMostPasses; ++pass) {
        treeNeedsLayout_ = false;
        try {
            if (!engine_)
                engine_ = std::make_unique<LayoutEngine>();
            engine_->layout(*this);
            layoutSubtreeSubviews();
        } catch (...) {
            treeNeedsLayout_ = true;
            throw;
        }
    }
}

void UIView::layoutOwnSubviews() {
    if (!std::exchange(needsLayout_, false))
        return;
    try {
        layoutSubviews();
    } catch (...) {
        setNeedsLayout();
        throw;
    }
}

void UIView::layoutSubtreeSubviews() {
    layoutOwnSubviews();
    for (std::size_t i = 0; i < subviews_.size(); ++i) {
        const Ref<UIView> view = subviews_[i];
        view->layoutSubtreeSubviews();
    }
}

} // namespace tesmar
