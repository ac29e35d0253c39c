// In builds with assertions, using the user interface on another thread is a fatal error.
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tesmar/tesmar.h"

#include <functional>
#include <gtest/gtest.h>
#include <thread>

namespace tesmar {
namespace {

// On each thread: uses the interface, also in a destructor that runs when the thread ends.
[[noreturn]] void passOn() {
    const auto use = [] {
        thread_local Ref<UISwitch> last;
        last = make<UISwitch>();
    };
    std::thread(use).join();
    std::thread(use).join();
    use();
    std::fputs("passed on\n", stderr);
    std::thread(use).join();
    std::_Exit(0);
}

TEST(MainThread, IsTheNextOneAfterItsEnd) {
#ifdef NDEBUG
    GTEST_SKIP() << "built without assertions";
#endif
    EXPECT_DEATH(passOn(), "^passed on\ntesmar: .* off the main thread");
}

TEST(MainThread, UseOfTheInterfaceOnAnotherThreadIsFatal) {
#ifdef NDEBUG
    GTEST_SKIP() << "built without assertions";
#endif
    HeadlessHost host({568, 320});
    UIWindow& window = *host.window();
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    const auto panel = make<TESMARViewController>();
    const auto control = make<UISwitch>();
    const struct {
        std::string operation;
        std::function<void()> call;
    } rows[] = {
        {"UIWindow::touch", [&] { window.touch(UITouchPhase::began, 1, {}, 0); }},
        {"UIWindow::wheel", [&] { window.wheel({}, {}, 0); }},
        {"UIWindow::key", [&] { window.key(UIKey::back, UIKeyRepeat::pressed, 0); }},
        {"UIWindow::updateAccessibility", [&] { window.updateAccessibility(); }},
        {"UIWindow::needsRender", [&] { window.needsRender(); }},
        {"UIWindow::render", [&] { window.render({}, 0); }},
        {"UIWindow::setSize", [&] { window.setSize(CGSize()); }},
        {"UIWindow::presentViewController", [&] { window.presentViewController(panel, false); }},
        {"NSRunLoop::mainRunLoop", [] { NSRunLoop::mainRunLoop(); }},
        {"NSRunLoop::advanceTo", [&] { loop.advanceTo(1); }},
        {"NSRunLoop::schedule", [&] { loop.schedule(1, [] {}); }},
        {"UIView", [] { make<TESMARViewController>(); }}, // its first control fails
        {"UIView::insertSubview", [&] { control->addSubview(host.window()); }},
        {"UIView::setNeedsDisplay", [&] { control->setHidden(true); }},
        {"UIView::setNeedsLayout", [&] { control->invalidateIntrinsicContentSize(); }},
        {"UIView::layoutIfNeeded", [&] { control->layoutIfNeeded(); }},
        {"UIControl::addTarget", [&] { control->addTarget(panel, Selector("selfDismiss"), 1); }},
        {"UIViewController::dismiss", [&] { panel->dismissViewControllerAnimated(false); }},
        {"TESMARViewController::setCCEnabled", [&] { panel->setCCEnabled(false); }},
    };
    for (const auto& [operation, call] : rows)
        EXPECT_DEATH(std::thread(call).join(),
                     "^tesmar: " + operation + ".* off the main thread.*\n$");
}

} // namespace
} // namespace tesmar
