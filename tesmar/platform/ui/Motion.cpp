#include "tesmar/platform/ui/Motion.h"

#include "tesmar/platform/geometry/geometry.h"

#include <new>
#include <utility>

namespace tesmar {
namespace {

MotionSetting& setting() {
    static MotionSetting value = MotionSetting::full;
    return value;
}

double easeOut(double progress) {
    const double left = 1 - progress;
    return 1 - left * left * left;
}

} // namespace

MotionSetting motionSetting() {
    return setting();
}
void setMotionSetting(MotionSetting value) {
    setting() = value;
}

class Transition::Client : public FrameClient {
  public:
    explicit Client(Transition& owner) : owner_(&owner) {}
    void leave() { owner_ = nullptr; }

    bool frame(double now) override {
        if (!owner_)
            return false;
        Transition& t = *owner_;
        const double progress = motionSetting() == MotionSetting::reduced
                                    ? 1
                                    : finite((now - t.start_) / t.seconds_, 0, 1, 1);
        t.value_ = progress >= 1 ? t.target_ : t.from_ + (t.target_ - t.from_) * easeOut(progress);
        if (progress < 1) {
            t.onChange_();
            return owner_ != nullptr;
        }
        // Arrived: the transition stands before anybody hears of it.
        const auto changed = t.onChange_;
        const auto arrival = std::exchange(t.onArrival_, {});
        const auto kept = std::exchange(t.client_, nullptr);
        owner_ = nullptr;
        changed();
        if (arrival)
            arrival();
        return false;
    }

  private:
    Transition* owner_;
};

Transition::Transition(double value, std::function<void()> onChange)
    : value_(value), from_(value), target_(value), onChange_(std::move(onChange)) {}

Transition::~Transition() {
    if (client_)
        client_->leave();
}

void Transition::jumpTo(double value) {
    if (client_)
        std::exchange(client_, nullptr)->leave();
    onArrival_ = {};
    target_ = value;
    if (std::exchange(value_, value) != value)
        onChange_();
}

void Transition::moveTo(double target, double seconds, std::function<void()> onArrival) {
    const bool moves =
        motionSetting() == MotionSetting::full && target != value_ && seconds > 0 && setOff();
    if (!moves) {
        jumpTo(target);
        if (onArrival)
            onArrival();
        return;
    }
    from_ = value_;
    target_ = target;
    start_ = NSRunLoop::mainRunLoop().now();
    seconds_ = seconds;
    onArrival_ = std::move(onArrival);
}

// False without the memory to move: then it lands at once.
bool Transition::setOff() {
    try {
        const auto client = client_ ? client_ : std::make_shared<Client>(*this);
        NSRunLoop::mainRunLoop().addFrameClient(client);
        client_ = client;
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace tesmar
