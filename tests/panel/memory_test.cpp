// Every single allocation of the library's own made to fail, one a session: the host gets a
// std::bad_alloc or what it asked for, and goes on with the same panel. A program of its own, since
// it replaces operator new.
#include "failing_new.h"
#include "panel_fixture.h"
#include "soundness.h"

#include <cstdlib>
#include <new>

namespace tesmar {
namespace {

constexpr CGSize kSize{340, 300};
constexpr long kStride = 97; // in the short form; TESMAR_SOAK=97 fails every allocation

struct Counter : TESMARViewControllerDelegate {
    void CCSwitchValueChanged(bool) override { ++calls; }
    void CCStyleAttributesChanged(const Ref<NSDictionary>&) override { ++calls; }
    void CCViewControllerWillDisappear() override { ++calls; }
    int calls = 0;
};

class ShortMemory {
  public:
    // Everything that a host does with a panel, with memory short at the n-th allocation.
    explicit ShortMemory(long n) {
        allocationsLeft = n;
        step([&] { host_ = std::make_unique<HeadlessHost>(kSize); });
        step([&] { panel_ = make<TESMARViewController>(); });
        if (!host_)
            host_ = std::make_unique<HeadlessHost>(kSize);
        if (!panel_)
            panel_ = make<TESMARViewController>();
        panel_->setDelegate(counter_);
        panel_->setAutoHideInterval(9);
        panel_->setRememberChangedStyle(true);
        step([&] { host_->window()->presentViewController(panel_, true); });
        wait(0.5);
        tap("textColorPicker.1"); // saves
        panel_->setRememberChangedStyle(false);
        for (const char* control : {"CCSwitch", "fontPicker.next", "fontPicker.next",
                                    "fontPicker.size", "textColorOpacityStepper", "resetButton"})
            tap(control);
        step([&] { host_->drag({170, 200}, {0, -80}, 0.1); });
        wait(1);
        step([&] { host_->window()->wheel({170, 200}, {0, 9}, host_->now()); });
        step([&] { host_->resize({300, 300}, 2); });
        step([&] { host_->resize(kSize, 1); });
        step([&] {
            panel_->setCCStyleAttributes(CCConstants::CCDefaultStyleAttributes()->mutableCopy());
        });
        wait(10);
        step([&] { panel_->dismissViewControllerAnimated(true); });
        wait(1);
        wasShort_ = allocationsLeft == 0;
        allocationsLeft = 0;
    }

    // False once n is more than all that there are.
    bool wasShort() const { return wasShort_; }
    int thrown() const { return thrown_; }

    // The same panel works, and goes.
    void goOn() {
        if (const auto top = host_->window()->presentedViewController())
            top->dismissViewControllerAnimated(false);
        host_->advance(20);
        ASSERT_EQ(host_->window()->presentedViewController(), nullptr);
        host_->resize({480, 420}, 1); // all of it in sight
        panel_->setAutoHideInterval(-1);
        host_->window()->presentViewController(panel_, false);
        for (const char* control :
             {"textColorPicker.1", "CCSwitch", "fontPicker.next", "resetButton"}) {
            const int calls = counter_->calls;
            tap(control);
            EXPECT_EQ(counter_->calls, calls + 1) << control;
        }
        requireSamePicture(*host_->window(), host_->pixels());
        panel_->dismissViewControllerAnimated(false);
        const WeakRef<UIViewController> watched = panel_;
        panel_.reset();
        host_->advance(20);
        EXPECT_TRUE(watched.expired());
        requireRest(*host_->window());
        EXPECT_EQ(UIGraphicsGetCurrentContext(), nullptr);
    }

  private:
    template <class Deed>
    void step(Deed deed) {
        try {
            deed();
        } catch (const std::bad_alloc&) {
            ++thrown_;
        }
    }
    void wait(double seconds) {
        step([&] { host_->advance(seconds); });
        step([&] { host_->render(); });
    }
    void tap(const char* control) {
        step([&] {
            if (const UIView* view = host_->window()->viewWithIdentifier(control))
                host_->tap(view->convertRectTo(view->bounds(), nullptr).center());
        });
        wait(0.2);
    }

    std::unique_ptr<HeadlessHost> host_;
    Ref<TESMARViewController> panel_;
    const Ref<Counter> counter_ = std::make_shared<Counter>();
    bool wasShort_ = false;
    int thrown_ = 0;
};

class MemoryTest : public PanelTest {};

TEST_F(MemoryTest, ShortOfMemoryOnce) {
    const char* const soak = std::getenv("TESMAR_SOAK");
    const char* const only = std::getenv("TESMAR_ALLOCATION");
    const long stride = std::max(1L, kStride / std::max(1L, soak ? std::atol(soak) : 1));
    long sessions = 0, thrown = 0;
    for (long n = only ? std::atol(only) : 1;; n += stride) {
        SCOPED_TRACE("TESMAR_ALLOCATION=" + std::to_string(n));
        try {
            ShortMemory host(n);
            if (!host.wasShort())
                break;
            ++sessions;
            thrown += host.thrown();
            host.goOn();
        } catch (const std::exception& fault) {
            ADD_FAILURE() << fault.what();
        }
        if (HasFailure())
            break;
    }
    std::printf("%ld allocations failed; the host heard of %ld\n", sessions, thrown);
    EXPECT_GT(sessions, 0);
}

} // namespace
} // namespace tesmar
