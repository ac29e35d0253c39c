#include "Screen.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/hosts/sdl/SDLHost.h"

#include <chrono>

using namespace tesmar;

namespace {

class SDLScreen : public Screen {
  public:
    explicit SDLScreen(CGSize size) : host_({.title = "probe", .size = size, .scale = 1}) {}
    Ref<UIWindow> window() override { return host_.window(); }

    double now() override {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
            .count();
    }

    void show() override { host_.turn(0); }

    // Resizes only the panel's window, not the desktop's: the desktop is not measured.
    void resize(CGSize size) override { host_.window()->setSize(size); }

    void settle() override {
        while (NSRunLoop::mainRunLoop().nextDeadline())
            host_.turn();
        host_.turn(0);
    }

    int idle(double seconds) override {
        int turns = 0;
        for (const double end = now() + seconds; now() < end; ++turns)
            host_.turn(end - now());
        return turns - 1; // the last turn ends the wait
    }

  private:
    SDLHost host_;
};

} // namespace

extern "C" __attribute__((visibility("default"))) Screen* makeSDLScreen(CGSize size) {
    return new SDLScreen(size);
}
