// Decides where each finger goes: to a view, or into the dragging of a scroll view.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/ui/UITouch.h"

#include <memory>
#include <vector>

namespace tesmar {

class UIWindow;

class TouchDispatcher {
  public:
    explicit TouchDispatcher(UIWindow& window);
    ~TouchDispatcher();

    // Each answers whether the finger is the window's.
    bool began(std::int64_t id, CGPoint point, double time);
    bool moved(std::int64_t id, CGPoint point, double time);
    bool ended(std::int64_t id, CGPoint point, double time);
    bool cancelled(std::int64_t id, double time);
    void cancelAll(double time);

  private:
    enum class Stage {
        gone,      // lifted, or taken away
        outside,   // beside everything that is presented
        waiting,   // may still become a drag; the view below does not know of it yet
        caught,    // it stopped moving content, and is nobody's tap
        delivered, // the view has it
        dragging,  // a scroll view has it
    };
    struct Finger {
        UITouch touch;
        Stage stage = Stage::waiting;
        WeakRef<NSObject> view;
        WeakRef<NSObject> scrollView; // that drags, or was caught
        std::uint64_t deliveryTimer = 0;
    };

    using Shared = std::shared_ptr<Finger>; // every call out may take fingers away and bring others

    Shared find(std::int64_t id) const;
    void forget(Finger& finger);
    void cancel(const Shared& finger, double time);
    void deliver(const Shared& finger);
    bool startDrag(const Shared& finger);

    UIWindow& window_;
    std::vector<Shared> fingers_; // in the order of their landing
};

} // namespace tesmar
