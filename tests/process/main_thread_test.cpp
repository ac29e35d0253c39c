// The user interface belongs to one thread. Builds with assertions say so.
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tesmar/tesmar.h"

#include <functional>
#include <gtest/gtest.h>
#include <thread>

namespace tesmar {
namespace {

TEST(MainThread, AnotherOneEndsTheProcessWithALine) {
#ifdef NDEBUG
    GTEST_SKIP() << "built without assertions";
#endif
    HeadlessHost host({568, 320});
    UIWindow& window = *host.window();
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    const auto view = make<UIView>();
    const auto panel = make<TESMARViewController>();
    const auto control = make<UISwitch>();
    Ref<UIView> last = make<UIView>();
    const struct {
        const char* operation;
        std::function<void()> call;
    } doors[] = {
        {"UIWindow::touch", [&] { window.touch(UITouchPhase::began, 1, {}, 0); }},
        {"UIWindow::wheel", [&] { window.wheel({}, {}, 0); }},
        {"UIWindow::key", [&] { window.key(UIKey::escape, 0); }},
        {"UIWindow::cancelTouches", [&] { window.cancelTouches(0); }},
        {"UIWindow::needsRender", [&] { window.needsRender(); }},
        {"UIWindow::render", [&] { window.render(nullptr, 0); }},
        {"UIWindow::invalidate", [&] { window.invalidate(); }},
        {"UIWindow::setSize",
         [&] {
             window.setSize({1, 1});
         }},
        {"UIWindow::setScale", [&] { window.setScale(2); }},
        {"UIWindow::presentViewController", [&] { window.presentViewController(panel, false); }},
        {"NSRunLoop::mainRunLoop", [] { NSRunLoop::mainRunLoop(); }},
        {"NSRunLoop::advanceTo", [&] { loop.advanceTo(1); }},
        {"NSRunLoop::nextDeadline", [&] { loop.nextDeadline(); }},
        {"NSRunLoop::schedule", [&] { loop.schedule(1, [] {}); }},
        {"NSRunLoop::cancel", [&] { loop.cancel(1); }},
        {"UIView", [] { make<UIView>(); }},
        {"~UIView", [&] { last.reset(); }},
        {"UIView::insertSubview", [&] { view->addSubview(control); }},
        {"UIView::setNeedsDisplay", [&] { view->setBackgroundColor(UIColor::redColor()); }},
        {"UIView::setNeedsDisplay", [&] { view->setHidden(true); }},
        {"UIView::setNeedsLayout", [&] { view->invalidateIntrinsicContentSize(); }},
        {"UIView::layoutIfNeeded", [&] { view->layoutIfNeeded(); }},
        {"UIControl::addTarget", [&] { control->addTarget(view, Selector("frame"), 1); }},
        {"UIControl::sendActions", [&] { control->sendActionsForControlEvents(1); }},
        {"UIView", [] { make<TESMARViewController>(); }}, // of its first control
        {"UIViewController::view", [&] { panel->view(); }},
        {"UIViewController::dismiss", [&] { panel->dismissViewControllerAnimated(false); }},
        {"TESMARViewController::setCCEnabled", [&] { panel->setCCEnabled(false); }},
        {"TESMARViewController::setDelegate", [&] { panel->setDelegate(nullptr); }},
        {"TESMARViewController::setAutoHideInterval", [&] { panel->setAutoHideInterval(1); }},
    };
    for (const auto& door : doors)
        EXPECT_DEATH(std::thread(door.call).join(),
                     "^tesmar: " + std::string(door.operation) + ".* off the main thread.*\n$");
}

} // namespace
} // namespace tesmar
