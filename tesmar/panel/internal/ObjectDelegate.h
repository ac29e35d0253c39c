// A delegate that is reached through the object runtime alone.
#pragma once

#include "tesmar/panel/TESMARViewControllerDelegate.h"

namespace tesmar {

// Owns the object, and sends it each call of the panel as a message.
class ObjectDelegate : public TESMARViewControllerDelegate {
  public:
    // Whether the object publishes every selector of the delegate.
    static bool fits(const NSObject& object);

    explicit ObjectDelegate(Ref<NSObject> object) : object_(std::move(object)) {}

    const Ref<NSObject>& object() const { return object_; }

    void CCSwitchValueChanged(bool on) override;
    void CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) override;
    void CCViewControllerWillDisappear() override;

  private:
    const Ref<NSObject> object_;
};

} // namespace tesmar
