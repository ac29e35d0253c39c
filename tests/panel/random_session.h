// A host gone wild: bytes decide what it does to a window with a panel, in any order, with any
// numbers, from within any call of the panel's.
#pragma once

#include "tesmar/tesmar.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tesmar {

// Where the decisions come from.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    // Nothing once the bytes have run out.
    virtual std::optional<std::uint8_t> next() = 0;
};

class RandomSession {
  public:
    explicit RandomSession(ByteSource& bytes);
    ~RandomSession();

    // One event of the host's, and a look at what came of it. False once the bytes have run out.
    // Throws Unsound (soundness.h).
    bool step();
    // The host comes to its senses: it puts everything away, looks for what is left behind, and
    // uses a new panel in the same window.
    void finish();

  private:
    struct Listener;

    std::uint32_t below(std::uint32_t count);
    double hostileNumber();
    double coordinate();
    CGPoint point();
    double eventTime();
    CGPoint somethingOn(UIWindow& window);
    void act();
    void heard();

    void touch();
    void tap();
    void drag();
    void wheel();
    void wait();
    void escape();
    void loseTouches();
    void resize();
    void setAreas();
    void present();
    void dismiss();
    void replacePanel();
    void replaceWindow();
    void setProperties();
    void assignStyle();
    void setMotion();
    void render();
    void misrender();

    ByteSource& bytes_;
    bool ended_ = false;
    int depth_ = 0; // of calls back
    double now_;
    Ref<UIWindow> window_;
    std::vector<std::uint32_t> pixels_; // none while the surface is too large to be worth it
    Ref<TESMARViewController> panel_;
    std::vector<WeakRef<TESMARViewController>> panels_; // all that there were
    Ref<Listener> listener_;
};

} // namespace tesmar
