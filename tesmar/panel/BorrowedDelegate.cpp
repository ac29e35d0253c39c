#include "tesmar/panel/TESMARViewControllerDelegate.h"

namespace tesmar {

TESMARViewControllerDelegate::~TESMARViewControllerDelegate() = default;

// A call may end the loan, so the delegate is read once and nothing follows the call.
class TESMARBorrowedDelegate::Forwarder : public TESMARViewControllerDelegate {
  public:
    explicit Forwarder(TESMARViewControllerDelegate& lent) : lent_(&lent) {}

    void endLoan() { lent_ = nullptr; }

    void CCSwitchValueChanged(bool on) override {
        if (lent_)
            lent_->CCSwitchValueChanged(on);
    }
    void CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) override {
        if (lent_)
            lent_->CCStyleAttributesChanged(attributes);
    }
    void CCViewControllerWillDisappear() override {
        if (lent_)
            lent_->CCViewControllerWillDisappear();
    }

  private:
    TESMARViewControllerDelegate* lent_;
};

TESMARBorrowedDelegate::TESMARBorrowedDelegate(TESMARViewControllerDelegate& lent)
    : forwarder_(std::make_shared<Forwarder>(lent)) {}

TESMARBorrowedDelegate::~TESMARBorrowedDelegate() {
    forwarder_->endLoan();
}

Ref<TESMARViewControllerDelegate> TESMARBorrowedDelegate::delegate() const {
    return forwarder_;
}

} // namespace tesmar
