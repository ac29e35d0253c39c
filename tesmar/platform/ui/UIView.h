// A rectangle on the screen that draws itself, contains other views, takes touches and takes part
// in layout. Main thread only. All lengths are in points; y grows down.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/layout/LayoutItem.h"
#include "tesmar/platform/layout/NSLayoutConstraint.h"
#include "tesmar/platform/ui/UIFocusCell.h"

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

class CGContext;
class KeptPicture;
class LayoutEngine;
class NSBundle;
class UITouch;
class UIViewController;
class UIWindow;
struct PixelRect;
struct UIAccessibleElement;
enum class UIAccessibleAction;

// A width or height of an intrinsic size that means "no preference".
inline constexpr CGFloat UIViewNoIntrinsicMetric = -1;
inline constexpr CGSize UILayoutFittingCompressedSize{0, 0};

enum class UISemanticContentAttribute {
    unspecified, // as the superview, and left to right without one
    forceLeftToRight,
    forceRightToLeft,
};

class TESMAR_API UIView : public NSObject, public LayoutItem {
    TESMAR_CLASS

  public:
    UIView();
    ~UIView() override;

    bool init() override { return initWithFrame({}); }
    virtual bool initWithFrame(CGRect frame);
    // Reads "frame", "hidden", "clipsToBounds", "userInteractionEnabled", "backgroundColor",
    // "accessibilityIdentifier", "translatesAutoresizingMaskIntoConstraints" and "subviews".
    bool initWithCoder(NSCoder& coder) override;

    // --- Geometry -------------------------------------------------------------------------------

    // In the superview's coordinates. Coordinates that are NaN or infinite are made finite.
    const CGRect& frame() const { return frame_; }
    void setFrame(CGRect frame);
    // The visible rectangle in the view's own coordinates; the origin of a scroll view's bounds is
    // its content offset, that of other views zero.
    CGRect bounds() const { return {boundsOrigin_, frame_.size}; }

    // From and to this view's bounds coordinates. A null `view` means the window, or the topmost
    // view where there is no window. Both views must be in the same tree.
    CGPoint convertPointTo(CGPoint point, const UIView* view) const;
    CGPoint convertPointFrom(CGPoint point, const UIView* view) const;
    CGRect convertRectTo(const CGRect& rect, const UIView* view) const;

    // --- Hierarchy ------------------------------------------------------------------------------

    // Null when there is none; not owned.
    UIView* superview() const { return superview_; }
    // Back to front.
    const std::vector<Ref<UIView>>& subviews() const { return subviews_; }
    // The window that the view is in, or null; not owned.
    UIWindow* window() const;
    // Adds `view` in front of the other subviews and removes it from its previous superview.
    // Adding a view to itself or to one of its own descendants is a fatal error.
    void addSubview(const Ref<UIView>& view);
    // The same at an index of subviews(), 0 for the back; too large an index means the front.
    void insertSubview(const Ref<UIView>& view, std::size_t atIndex);
    // Moves `view`, which must be a subview, in front of or behind the other subviews; ignored for
    // other views and null.
    void bringSubviewToFront(const Ref<UIView>& view);
    void sendSubviewToBack(const Ref<UIView>& view);
    // Does nothing without a superview.
    void removeFromSuperview();
    // Whether `view` is this view or one of its ancestors.
    bool isDescendantOf(const UIView* view) const;
    // The first view at or below this one with that accessibility identifier, in tree order, or
    // null; not owned.
    UIView* viewWithIdentifier(std::string_view identifier);

    // --- Look -----------------------------------------------------------------------------------

    const Ref<UIColor>& backgroundColor() const { return backgroundColor_; }
    // Null, the initial value: no background is painted.
    void setBackgroundColor(const Ref<UIColor>& color);
    // Opacity of the view and its descendants; initially 1, clamped to 0 to 1 (NaN becomes 1).
    double alpha() const { return alpha_; }
    void setAlpha(double alpha);
    bool isHidden() const { return hidden_; }
    void setHidden(bool hidden);
    bool clipsToBounds() const { return clipsToBounds_; }
    void setClipsToBounds(bool clips);
    // An offset of the drawing and of hit testing that leaves the frame alone, for motion.
    CGPoint translation() const { return translation_; }
    void setTranslation(CGPoint translation);
    // The view's name for tests and tools; empty for none.
    const std::string& accessibilityIdentifier() const { return identifier_; }
    virtual void setAccessibilityIdentifier(std::string identifier) {
        identifier_ = std::move(identifier);
    }

    // Whether any part of what the view draws can be seen in its window: not hidden, clipped or
    // covered. Motion that cannot be seen ends at once.
    bool isOnScreen() const;

    // Marks all of the view, or `rect` (bounds coordinates) of it, to be painted in the next frame.
    void setNeedsDisplay();
    void setNeedsDisplayInRect(const CGRect& rect);
    // Paints the view's own content, above its background and below its subviews, into the current
    // context (UIGraphicsGetCurrentContext), whose coordinates are those of the bounds. `rect` is
    // what needs painting; painting more is harmless.
    virtual void draw(CGRect rect);
    // How far draw() paints outside the bounds on each side, at least 0.
    virtual UIEdgeInsets drawingOverflow() const { return {}; }

    // --- Touches --------------------------------------------------------------------------------

    // Initially true. If false, neither the view nor its descendants take touches.
    void setUserInteractionEnabled(bool enabled) { userInteractionEnabled_ = enabled; }
    // Whether a finger can reach the view: not hidden, not transparent, and enabled.
    bool takesTouches() const { return !hidden_ && userInteractionEnabled_ && alpha_ >= 0.01; }
    // The deepest view under the point (bounds coordinates) that takes touches, or null; not owned.
    virtual UIView* hitTest(CGPoint point);
    virtual bool pointInside(CGPoint point) const { return bounds().contains(point); }
    // The events of one finger, in order: began, any number of moved, then ended or, when the
    // system takes the touch away, cancelled. The base class ignores them.
    virtual void touchBegan(UITouch& touch);
    virtual void touchMoved(UITouch& touch);
    virtual void touchEnded(UITouch& touch);
    virtual void touchCancelled(UITouch& touch);

    // --- Accessibility: see UIAccessibility.h ---------------------------------------------------

    // Describes the view to assistive technologies. `element` has its frame, and the view's
    // identifier; an override sets its role and the rest. The base class leaves it without a role:
    // only views in it are elements. Children that an override adds are parts of the view that are
    // no views themselves; their identifiers are appended to the view's.
    virtual void describe(UIAccessibleElement& element) const;
    // Performs an action that describe() offered for the view, or for the part of it with that
    // element's identifier. Returns whether it did.
    virtual bool perform(const UIAccessibleElement& element, UIAccessibleAction action);

    // --- Focus ----------------------------------------------------------------------------------

    // The places in this view that keys can put the focus on; none by default.
    virtual std::vector<UIFocusCell> focusCells() const { return {}; }
    // Whether Tab enters this view's cells and those of its descendants as one group. False by
    // default: each control is a group.
    virtual bool isFocusGroup() const { return false; }
    // The cell that the plus or minus key operates while the focus is in this view or a descendant;
    // none by default. The nearest view that returns one counts.
    virtual UIFocusTarget focusStepTarget(UIFocusStep) { return {}; }

    // --- Layout ---------------------------------------------------------------------------------

    // True (the default): the frame is what setFrame() sets, and constraints treat it as fixed.
    // False: constraints determine the frame.
    bool translatesAutoresizingMaskIntoConstraints() const { return translatesMask_; }
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);
    // The items of a constraint must be this view or its descendants. Null is ignored.
    void addConstraint(const Ref<NSLayoutConstraint>& constraint);
    void addConstraints(const std::vector<Ref<NSLayoutConstraint>>& constraints);
    // Those that were not added to this view are ignored.
    void removeConstraints(const std::vector<Ref<NSLayoutConstraint>>& constraints);
    using NamedViews = std::map<std::string, Ref<UIView>>;
    struct FormatRow {
        std::string_view format;
        NSLayoutFormatOptions options = NSLayoutFormatNone;
    };
    // Adds the constraints of NSLayoutConstraint::constraintsWithVisualFormat() for each row, in
    // order. Errors in a format are fatal.
    void addConstraintsWithVisualFormats(std::initializer_list<FormatRow> rows,
                                         const NamedViews& views,
                                         const NSLayoutConstraint::Metrics& metrics = {});

    // The preferred size of the content, in points; UIViewNoIntrinsicMetric for a width or height
    // without a preference.
    virtual CGSize intrinsicContentSize() const;
    void invalidateIntrinsicContentSize();
    // Counts the changes of constraints and intrinsic sizes in this view and its descendants. Only
    // layout roots count: the topmost view and the views of controllers.
    std::uint64_t layoutChanges() const { return layoutChanges_; }
    // How strongly the view resists becoming larger than its intrinsic size, clamped to 0 to 1000.
    // Initially 250; NaN counts as 250.
    double contentHuggingPriority(LayoutAxis axis) const;
    void setContentHuggingPriority(double priority, LayoutAxis axis);

    // The size closest to `target`, in points, that constraints and content allow: the smallest for
    // UILayoutFittingCompressedSize. Changes no frames.
    CGSize systemLayoutSizeFittingSize(CGSize target);
    // Sets the size to the intrinsic size and keeps the origin. A width or height without a
    // preference does not change.
    void sizeToFit();

    // The reading direction in which the view places its subviews (leading to trailing) and, in
    // some controls, draws its parts. Initially unspecified.
    void setSemanticContentAttribute(UISemanticContentAttribute attribute);
    bool isRightToLeft() const;

    void setNeedsLayout();
    // Updates all frames below the root of the view's layout, which is the closest controller's
    // view above it or the topmost view. Does nothing while that layout is under way: it goes on
    // until nothing needs it, but at most eight passes.
    void layoutIfNeeded();
    // Called after the constraints have been solved, if the view's size has changed or
    // setNeedsLayout() was called.
    virtual void layoutSubviews() {}

    // --- Added by the caption library -----------------------------------------------------------

    // Instantiates the interface file `named` of `bundle` (null: the main bundle) and returns its
    // first top-level object, or null when that is not a view. A file that does not load, or
    // contains no object, is a fatal error. The caller checks the class.
    static Ref<UIView> loadFromTESMARNib(const std::string& named, const Ref<NSBundle>& bundle);

    // --- LayoutItem -----------------------------------------------------------------------------

    std::shared_ptr<LayoutItem> layoutParent() const override { return refTo(superview_); }
    std::size_t layoutChildCount() const override { return subviews_.size(); }
    LayoutItem& layoutChild(std::size_t index) const override { return *subviews_[index]; }
    const std::vector<std::shared_ptr<NSLayoutConstraint>>& layoutConstraints() const override {
        return constraints_;
    }
    bool layoutFrameIsFixed() const override { return translatesAutoresizingMaskIntoConstraints(); }
    CGRect layoutFrame() const override { return frame_; }
    std::optional<CGFloat> layoutIntrinsicExtent(LayoutAxis axis) const override;
    double layoutHuggingPriority(LayoutAxis axis) const override {
        return contentHuggingPriority(axis);
    }
    double layoutCompressionPriority(LayoutAxis) const override {
        return UILayoutPriorityDefaultHigh;
    }
    std::optional<CGFloat> layoutBaselineBelowCenter() const override { return std::nullopt; }
    bool layoutEdgesAreContent() const override { return false; }
    bool layoutIsRightToLeft() const override { return isRightToLeft(); }
    std::string layoutName() const override;
    void setLayoutFrame(const CGRect& frame) override;
    void setLayoutContentSize(CGSize) override {}
    void layoutNeedsUpdate() override;

  protected:
    // Removes all subviews. Those with other owners live on without a superview or window, and get
    // didMoveToWindow; exceptions thrown there are dropped, since this view is being destroyed.
    void detachSubviews() noexcept;
    void setBoundsOrigin(CGPoint origin);
    // Called when the view has entered or left a window, before it is called on the subviews.
    virtual void didMoveToWindow() {}
    // Like draw, but above the subviews.
    virtual void drawOverlay(CGRect /*rect*/) {}
    // While true, the view and all in it are painted once into a picture of their own, and again
    // only where they change: for views of which only opacity and translation change, as in a
    // motion. The translation is then rounded to device pixels.
    void setKeepsPicture(bool keeps);
    // Paints what is out of date of the kept picture now rather than in the next frame. Does
    // nothing outside a window or without a kept picture. Throws what the views' drawing throws.
    void paintPictureAhead();
    // True: each subview is the root of a layout of its own, and no constraint may refer to views
    // on both sides.
    virtual bool subviewsAreLayoutRoots() const { return false; }
    // Paints the view with everything in it. `superOrigin` is the origin of the superview's
    // coordinates on the surface.
    void paint(CGContext& context, CGPoint superOrigin);

  private:
    friend class UIViewController;
    friend class UIWindow;

    UIView& layoutRoot();
    void layoutTree();
    void layoutPass();
    void layoutOwnSubviews();
    void layoutSubtreeSubviews();
    void applyFrame(CGRect frame);
    void notifyMovedToWindow();
    CGPoint originInSuperview() const { return frame_.origin + translation_; }
    CGPoint originOnSurface() const;
    CGRect drawnRect() const;
    CGRect onSurface(const CGRect& rect, CGPoint origin, CGFloat scale) const;
    CGRect subtreeExtent(CGPoint origin, CGFloat scale) const;
    CGRect shownExtent(CGFloat scale) const; // empty where it is hidden
    void wakeHost() const;
    UIWindow* windowToDamage() const;
    void damageSubtree();
    void damagePlace(); // as above, but all in it still looks the same
    void damage(const CGRect& rect, UIWindow& window);
    bool isInKeptPicture() const;
    // The part of a rectangle on the surface where this view can be seen, in whole pixels; empty
    // when it is hidden, clipped, outside the surface or covered.
    PixelRect visiblePixels(CGRect rect, const UIWindow& window) const;
    bool isCovered(const PixelRect& pixels, CGFloat scale) const;
    bool covers(const PixelRect& pixels, CGPoint origin, CGFloat scale) const;
    bool isFarFrom(const PixelRect& clip, CGPoint origin, CGFloat scale) const;
    void damageKeptPictures(const CGRect& onSurface);
    void paintSelf(CGContext& context, CGPoint origin);
    bool updatePicture(KeptPicture& picture, CGPoint superOrigin, CGFloat scale);
    bool paintPicture(CGContext& context, CGPoint superOrigin);
    void paintSubviews(CGContext& context, CGPoint origin);

    CGRect frame_;
    CGPoint boundsOrigin_;
    CGPoint translation_;
    UIView* superview_ = nullptr;
    std::vector<Ref<UIView>> subviews_;

    Ref<UIColor> backgroundColor_;
    double alpha_ = 1;
    bool hidden_ = false;
    bool clipsToBounds_ = false;
    std::shared_ptr<KeptPicture> picture_; // shared with its own painting, which may end it
    bool userInteractionEnabled_ = true;
    std::string identifier_;

    UISemanticContentAttribute semanticContentAttribute_ = UISemanticContentAttribute::unspecified;
    bool translatesMask_ = true;
    bool needsLayout_ = true;
    std::uint64_t layoutChanges_ = 0;
    bool treeNeedsLayout_ = true; // of a layout root
    bool isLayingOut_ = false;    // of a layout root
    double hugging_[2] = {UILayoutPriorityDefaultLow, UILayoutPriorityDefaultLow}; // by axis
    std::vector<Ref<NSLayoutConstraint>> constraints_;
    std::unique_ptr<LayoutEngine> engine_;   // of a layout root
    UIViewController* controller_ = nullptr; // whose view this is
};

} // namespace tesmar
