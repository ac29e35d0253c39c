#include "tesmar/platform/foundation/NSRunLoop.h"

#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/foundation/runtime.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace tesmar {
namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();
// Items run at their own times in one advanceTo(); as many again run at its end. Without a limit,
// work that reschedules itself would hang the host after a long pause.
constexpr int kMostItemsOnTime = 10'000;
constexpr double kShortestFrame = 0.001; // seconds
constexpr double kLongestFrame = 0.1;

} // namespace

FrameClient::~FrameClient() = default;

NSRunLoop& NSRunLoop::mainRunLoop() {
    assertMainThread("NSRunLoop::mainRunLoop");
    // Never destroyed: a pending message may own objects whose destructors need other statics.
    static NSRunLoop* loop = new NSRunLoop;
    return *loop;
}

void NSRunLoop::noteTime(double time) {
    assertMainThread("NSRunLoop::noteTime");
    if (std::isfinite(time))
        now_ = std::max(now_, time);
}

void NSRunLoop::advanceTo(double time) {
    assertMainThread("NSRunLoop::advanceTo");
    if (!std::isfinite(time))
        return;
    const Turn turn(*this);
    isWoken_ = false;
    const double end = std::max(now_, time);
    for (int fired = 0; fired < 2 * kMostItemsOnTime;) {
        const double item = items_.empty() ? kNever : items_.front().due;
        if (!frameClients_.empty() && nextFrame_ <= std::min(end, item)) {
            runFrames(std::min(end, item));
        } else if (item <= end) {
            now_ = fired++ < kMostItemsOnTime ? std::max(now_, item) : end;
            fireNextItem();
        } else {
            break;
        }
    }
    now_ = std::max(now_, end);
}

std::optional<double> NSRunLoop::nextDeadline() const {
    assertMainThread("NSRunLoop::nextDeadline");
    isWoken_ = false;
    return earliest();
}

std::optional<double> NSRunLoop::earliest() const {
    std::optional<double> deadline;
    if (!items_.empty() && items_.front().due < kNever)
        deadline = items_.front().due;
    const bool hasClients = std::any_of(frameClients_.begin(), frameClients_.end(),
                                        [](const auto& client) { return !client.expired(); });
    if (hasClients)
        deadline = deadline ? std::min(*deadline, nextFrame_) : nextFrame_;
    return deadline;
}

void NSRunLoop::setFrameInterval(double seconds) {
    assertMainThread("NSRunLoop::setFrameInterval");
    frameInterval_ = std::isnan(seconds) ? kDefaultFrameInterval
                                         : std::clamp(seconds, kShortestFrame, kLongestFrame);
}

void NSRunLoop::setWakeHandler(std::function<void()> handler) {
    assertMainThread("NSRunLoop::setWakeHandler");
    wakeHandler_ =
        handler ? std::make_shared<const std::function<void()>>(std::move(handler)) : nullptr;
    isWoken_ = false;
}

void NSRunLoop::wake() {
    if (!wakeHandler_ || turns_ > 0 || std::exchange(isWoken_, true))
        return;
    const auto handler = wakeHandler_; // it may be replaced meanwhile
    try {
        (*handler)();
    } catch (...) { // NOLINT(bugprone-empty-catch): the change that is under way must go on
    }
}

void NSRunLoop::wakeIfEarlierThan(const std::optional<double>& deadline) {
    const auto now = wakeHandler_ ? earliest() : std::nullopt;
    if (now && (!deadline || *now < *deadline))
        wake();
}

std::uint64_t NSRunLoop::schedule(double delay, std::function<void()> work) {
    assertMainThread("NSRunLoop::schedule");
    if (!work)
        fatalError("NSRunLoop::schedule: the work is an empty function");
    const double due = now_ + (delay > 0 ? delay : 0);
    const auto before = earliest();
    const auto at = std::upper_bound(items_.begin(), items_.end(), due,
                                     [](double d, const Item& item) { return d < item.due; });
    const auto id = ++lastId_;
    items_.insert(at, Item{id, due, nullptr, std::move(work)});
    wakeIfEarlierThan(before);
    return id;
}

void NSRunLoop::cancel(std::uint64_t id) {
    assertMainThread("NSRunLoop::cancel");
    const auto found =
        std::find_if(items_.begin(), items_.end(), [&](const Item& item) { return item.id == id; });
    if (found == items_.end())
        return;
    // Destroyed last: destructors that it triggers may use the queue.
    const auto cancelled = std::move(found->work);
    items_.erase(found);
}

void NSRunLoop::performSelectorAfterDelay(const Ref<NSObject>& target, Selector selector,
                                          const Ref<NSObject>& argument, double delay) {
    if (!target)
        fatalError("NSRunLoop::performSelectorAfterDelay: the target of \"" +
                   std::string(selector.name()) + "\" is null");
    const auto id = schedule(delay, [target, selector, argument] {
        const std::array<Value, 1> arguments{argument ? Value(argument) : Value()};
        performSelector(*target, selector, std::span(arguments).first(selector.argumentCount()));
    });
    const auto item =
        std::find_if(items_.begin(), items_.end(), [&](const Item& i) { return i.id == id; });
    item->target = target.get();
}

void NSRunLoop::cancelPreviousPerformRequests(const NSObject& target) {
    assertMainThread("NSRunLoop::cancelPreviousPerformRequests");
    for (;;) {
        const auto found = std::find_if(items_.begin(), items_.end(),
                                        [&](const Item& item) { return item.target == &target; });
        if (found == items_.end())
            return;
        // Destroyed last: destructors that it triggers may use the queue.
        const Item cancelled = std::move(*found);
        items_.erase(found);
    }
}

void NSRunLoop::addFrameClient(const Ref<FrameClient>& client) {
    assertMainThread("NSRunLoop::addFrameClient");
    if (!client)
        fatalError("NSRunLoop::addFrameClient: the client is null");
    std::erase_if(frameClients_, [](const auto& known) { return known.expired(); });
    for (const auto& known : frameClients_)
        if (!known.owner_before(client) && !client.owner_before(known))
            return;
    const auto before = earliest();
    if (frameClients_.empty())
        nextFrame_ = now_ + frameInterval_;
    frameClients_.push_back(client);
    wakeIfEarlierThan(before);
}

void NSRunLoop::fireNextItem() {
    const Item item = std::move(items_.front());
    items_.erase(items_.begin());
    item.work();
}

void NSRunLoop::runFrames(double time) {
    // Skips missed frames: the host has not drawn meanwhile.
    const double missed = std::floor((time - nextFrame_) / frameInterval_);
    const double at = std::min(nextFrame_ + std::max(missed, 0.0) * frameInterval_, time);
    now_ = std::max(now_, at);
    // At huge times adding an interval changes nothing, so use the next representable double.
    nextFrame_ = std::max(at + frameInterval_, std::nextafter(at, kNever));

    // A copy, because clients may add and remove clients. Its memory is reused.
    auto clients = std::exchange(frameScratch_, {});
    clients = frameClients_;
    for (const auto& weak : clients) {
        const auto client = weak.lock();
        if (client && client->frame(now_))
            continue;
        std::erase_if(frameClients_, [&](const auto& known) {
            return !known.owner_before(weak) && !weak.owner_before(known);
        });
    }
    clients.clear();
    frameScratch_ = std::move(clients);
}

} // namespace tesmar
