// Owns a view, hears when it comes and goes, and can be presented over a window's content.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/ui/UIView.h"

#include <functional>
#include <optional>
#include <string>

namespace tesmar {

class NSBundle;
class PresentationStack;

enum class UIModalPresentationStyle {
    card,       // a rounded card over whatever the host draws below
    fullScreen, // the view fills the window
};

class TESMAR_API UIViewController : public NSObject {
    TESMAR_CLASS

  public:
    using Completion = std::function<void()>;

    UIViewController();
    ~UIViewController() override;

    // Without an interface file's name, loadView makes a plain view.
    virtual bool initWithNibName(const std::optional<std::string>& nibName,
                                 const Ref<NSBundle>& bundle);
    bool initWithCoder(NSCoder& coder) override;
    bool init() override { return initWithNibName(std::nullopt, nullptr); }

    // Loads the view at the first call.
    const Ref<UIView>& view();
    void setView(const Ref<UIView>& view);
    bool isViewLoaded() const { return view_ != nullptr; }

    // Makes the view: from the interface file, or a plain one. An override sets `view` itself or
    // calls this one.
    virtual void loadView();
    virtual void viewDidLoad() {}
    // In this order for each appearance. Each is called once for each coming and going, and not at
    // all for a step that was broken off.
    virtual void viewWillAppear(bool /*animated*/) {}
    virtual void viewDidAppear(bool /*animated*/) {}
    virtual void viewWillDisappear(bool /*animated*/) {}
    virtual void viewDidDisappear(bool /*animated*/) {}
    // The host may call it when memory is short.
    virtual void didReceiveMemoryWarning() {}

    UIModalPresentationStyle modalPresentationStyle() const { return style_; }
    void setModalPresentationStyle(UIModalPresentationStyle style) { style_ = style; }

    // Presents `controller` over this one, which must be a window's root controller or presented
    // itself; otherwise, or when `controller` is presented already, a diagnostic says so and
    // nothing happens. A controller that is still on its way out comes back. The window keeps it
    // alive until it is dismissed.
    void presentViewController(const Ref<UIViewController>& controller, bool animated,
                               Completion completion = {});
    // Dismisses what this controller presents, or else this controller itself. Does nothing when
    // neither is presented, or it is being dismissed already.
    void dismissViewControllerAnimated(bool animated, Completion completion = {});
    // Null when there is none.
    Ref<UIViewController> presentedViewController() const;
    Ref<UIViewController> presentingViewController() const;
    bool isBeingDismissed() const;

  private:
    friend class PresentationStack;

    Ref<UIView> view_;
    bool loading_ = false;
    std::optional<std::string> nibName_;
    Ref<NSBundle> bundle_;
    UIModalPresentationStyle style_ = UIModalPresentationStyle::card;
    PresentationStack* stack_ = nullptr; // while this is a window's root, or is presented
};

} // namespace tesmar
