#include "Screen.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/hosts/headless/HeadlessHost.h"

using namespace tesmar;

namespace {

class HeadlessScreen : public Screen {
  public:
    explicit HeadlessScreen(CGSize size) : host_(size) {}
    Ref<UIWindow> window() override { return host_.window(); }
    double now() override { return host_.now(); }
    void show() override { host_.render(); }
    void resize(CGSize size) override { host_.resize(size, 1); }

    void settle() override {
        while (NSRunLoop::mainRunLoop().nextDeadline())
            host_.advance(NSRunLoop::kDefaultFrameInterval);
        host_.render();
    }

    // Virtual time: sleeping itself takes no time here.
    int idle(double seconds) override {
        int wakeups = 0;
        for (const double end = now() + seconds;
             NSRunLoop::mainRunLoop().nextDeadline() && now() < end; ++wakeups)
            host_.advance(NSRunLoop::kDefaultFrameInterval);
        return wakeups + window()->needsRender();
    }

  private:
    HeadlessHost host_;
};

} // namespace

std::unique_ptr<Screen> makeHeadlessScreen(CGSize size) {
    return std::make_unique<HeadlessScreen>(size);
}
