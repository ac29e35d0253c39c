// Layout of views: constraints, intrinsic sizes, and the layout pass.
#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/layout/internal/LayoutEngine.h"
#include "tesmar/platform/ui/UIView.h"
#include "tesmar/platform/ui/UIViewController.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>
#include <utility>

namespace tesmar {
namespace {

// Keeps a layoutSubviews() that always requests another pass from hanging the host.
constexpr int kMaxPasses = 8;

std::size_t index(LayoutAxis axis) {
    return axis == LayoutAxis::horizontal ? 0 : 1;
}

class InProgress {
  public:
    explicit InProgress(bool& flag) : flag_(flag) { flag_ = true; }
    ~InProgress() { flag_ = false; }
    InProgress(const InProgress&) = delete;
    InProgress& operator=(const InProgress&) = delete;

  private:
    bool& flag_;
};

} // namespace

void UIView::setTranslatesAutoresizingMaskIntoConstraints(bool translates) {
    if (translates == translatesMask_)
        return;
    translatesMask_ = translates;
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

void UIView::removeConstraints(const std::vector<Ref<NSLayoutConstraint>>& constraints) {
    std::vector<Ref<NSLayoutConstraint>> others;
    for (const auto& constraint : constraints_)
        if (std::find(constraints.begin(), constraints.end(), constraint) == constraints.end())
            others.push_back(constraint);
    constraints_ = std::move(others);
    layoutNeedsUpdate();
}

void UIView::addConstraintsWithVisualFormats(std::initializer_list<FormatRow> rows,
                                             const NamedViews& views,
                                             const NSLayoutConstraint::Metrics& metrics) {
    const NSLayoutConstraint::Views items(views.begin(), views.end());
    for (const FormatRow& row : rows)
        addConstraints(NSLayoutConstraint::constraintsWithVisualFormat(row.format, row.options,
                                                                       metrics, items));
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
    hugging_[index(axis)] =
        finite(priority, 0, UILayoutPriorityRequired, UILayoutPriorityDefaultLow);
    layoutNeedsUpdate();
}

std::optional<CGFloat> UIView::layoutIntrinsicExtent(LayoutAxis axis) const {
    const CGSize size = intrinsicContentSize();
    const CGFloat extent = axis == LayoutAxis::horizontal ? size.width : size.height;
    if (extent == UIViewNoIntrinsicMetric)
        return std::nullopt;
    return finite(extent, 0, kLargestCoordinate, 0);
}

std::string UIView::layoutName() const {
    const std::string name(isa().name());
    return identifier_.empty() ? name : name + " \"" + identifier_ + "\"";
}

CGSize UIView::systemLayoutSizeFittingSize(CGSize target) {
    return LayoutEngine::fittingSize(*this, target);
}

void UIView::sizeToFit() {
    CGSize size = intrinsicContentSize();
    if (size.width == UIViewNoIntrinsicMetric)
        size.width = frame_.size.width;
    if (size.height == UIViewNoIntrinsicMetric)
        size.height = frame_.size.height;
    setFrame({frame_.origin, size});
}

void UIView::setSemanticContentAttribute(UISemanticContentAttribute attribute) {
    if (attribute == semanticContentAttribute_)
        return;
    semanticContentAttribute_ = attribute;
    layoutNeedsUpdate();
    setNeedsLayout();
    damageSubtree();
}

bool UIView::isRightToLeft() const {
    for (const UIView* view = this; view; view = view->superview_)
        if (view->semanticContentAttribute_ != UISemanticContentAttribute::unspecified)
            return view->semanticContentAttribute_ == UISemanticContentAttribute::forceRightToLeft;
    return false;
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
    wakeHost();
}

void UIView::layoutNeedsUpdate() {
    assertMainThread("UIView::setNeedsLayout");
    UIView& root = layoutRoot();
    root.treeNeedsLayout_ = true;
    ++root.layoutChanges_;
    if (root.engine_)
        root.engine_->invalidate();
    wakeHost();
}

// The next frame lays out, which may change pixels.
void UIView::wakeHost() const {
    if (window())
        NSRunLoop::mainRunLoop().wake();
}

void UIView::setLayoutFrame(const CGRect& frame) {
    if (finiteRect(frame) != frame_)
        applyFrame(finiteRect(frame));
}

void UIView::layoutIfNeeded() {
    assertMainThread("UIView::layoutIfNeeded");
    const auto self = refTo(this); // a callback may release this view
    layoutRoot().layoutTree();
}

void UIView::layoutTree() {
    if (isLayingOut_)
        return;
    const auto self = weak_from_this().lock();
    const InProgress inProgress(isLayingOut_);
    if (subviewsAreLayoutRoots()) {
        layoutOwnSubviews();
        for (std::size_t i = 0; i < subviews_.size(); ++i)
            Ref<UIView>(subviews_[i])->layoutTree();
        return;
    }
    for (int pass = 0; treeNeedsLayout_ && pass < kMaxPasses; ++pass) {
        treeNeedsLayout_ = false;
        try {
            // Null for a controller that is being destroyed, too.
            const auto controller =
                controller_ ? as<UIViewController>(controller_->weak_from_this().lock()) : nullptr;
            if (controller)
                controller->viewWillLayoutSubviews();
            layoutPass();
            for (; treeNeedsLayout_ && pass < kMaxPasses; ++pass)
                layoutPass();
            if (controller)
                controller->viewDidLayoutSubviews();
        } catch (...) {
            treeNeedsLayout_ = true;
            throw;
        }
    }
}

void UIView::layoutPass() {
    treeNeedsLayout_ = false;
    if (!engine_)
        engine_ = std::make_unique<LayoutEngine>();
    engine_->layout(*this);
    layoutSubtreeSubviews();
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
