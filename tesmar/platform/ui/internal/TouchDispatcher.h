// Sends the touches of each finger to a view, or turns them into the drag of a scroll view.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/ui/UITouch.h"

#include <memory>
#include <vector>

namespace tesmar {

class PresentationStack;
class UIView;
class UIWindow;

class TouchDispatcher {
  public:
    // Both must outlive this.
    TouchDispatcher(UIWindow& window, PresentationStack& presentations);
    ~TouchDispatcher();

    // Points are in window coordinates, times in seconds. Each returns whether the finger belongs
    // to the window.
    bool began(const UITouch& touch);
    bool wants(CGPoint point) const;
    bool moved(std::int64_t id, CGPoint point, double time);
    bool ended(std::int64_t id, CGPoint point, double time);
    bool cancelled(std::int64_t id, double time);
    bool hasFingers() const { return !fingers_.empty(); }
    void cancelAll(double time);
    // Cancels the touches of views at or below `root`; drags of scroll views go on.
    void cancelInside(const UIView& root, double time);

    // The view that the last finger landed on, and where in its bounds; null for none.
    struct Landing {
        WeakRef<NSObject> view;
        CGPoint point;
    };
    const Landing& lastLanding() const { return lastLanding_; }

  private:
    enum class Stage {
        gone,      // lifted or cancelled
        outside,   // landed beside everything that is presented
        waiting,   // may still become a drag; the view has not been notified yet
        caught,    // stopped moving content; not a tap
        delivered, // the view gets the touch
        dragging,  // a scroll view gets the touch
        pulling,   // moves a card down
    };
    struct Finger {
        UITouch touch;
        Stage stage = Stage::waiting;
        WeakRef<NSObject> view;
        WeakRef<NSObject> scrollView; // while caught or dragging
        std::uint64_t deliveryTimer = 0;
        double pullStart = 0; // seconds
    };

    using Shared = std::shared_ptr<Finger>; // any callback may remove fingers and add others

    bool takesOutsideTaps() const;
    Shared find(std::int64_t id) const;
    void forget(Finger& finger);
    void cancel(const Shared& finger, double time);
    void deliver(const Shared& finger);
    bool startDrag(const Shared& finger);
    bool startPull(const Shared& finger);
    void endPull(const UITouch& touch, double start);

    UIWindow& window_;
    PresentationStack& presentations_;
    Landing lastLanding_;
    std::vector<Shared> fingers_; // in the order in which they landed
};

} // namespace tesmar
