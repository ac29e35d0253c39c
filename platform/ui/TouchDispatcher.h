// Decides where each finger goes: to a view, or into the dragging of a scroll view.
#pragma once

#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UITouch.h"

#include <memory>
#include <vector>

namespace tesmar {

class TouchDispatcher {
  public:
    explicit TouchDispatcher(UIWindow& window) : window_(window) {}
    ~TouchDispatcher();

    // Each answers whether the finger is the window's.
    bool began(std::int64_t id, CGPoint point, double time);
    bool moved(std::int64_t id, CGPoint point, double time);
    bool ended(std::int64_t id, CGPoint point, double time);
    bool cancelled(std::int64_t id, double time);
    void cancelAll(double time);

  private:
    enum class Stage {
        free,      // no finger
        outside,   // beside everything that is presented
        waiting,   // may still become a drag; the view below does not know of it yet
        caught,    // it stopped moving content, and is nobody's tap
        delivered, // the view has it
        dragging,  // a scroll view has it
    };
    struct Finger {
        UITouch touch{0, {}, 0};
        Stage stage = Stage::free;
        WeakRef<NSObject> view;
        WeakRef<NSObject> scrollView; // that drags, or was caught
        std::uint64_t deliveryTimer = 0;
    };

    Finger* find(std::int64_t id);
    Finger& freeFinger();
    void free(Finger& finger);
    void deliver(Finger& finger);
    bool startDrag(Finger& finger);

    UIWindow& window_;
    std::vector<std::unique_ptr<Finger>> fingers_; // kept for reuse; views hold on to the touches
};

} // namespace tesmar
