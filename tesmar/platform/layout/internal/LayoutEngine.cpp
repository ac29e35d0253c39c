#include "tesmar/platform/layout/internal/LayoutEngine.h"

#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/layout/internal/LayoutSystem.h"

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tesmar {
namespace {

// An item whose setter keeps changing the system must not hang the host.
constexpr int kMostPasses = 4;

} // namespace

// Apart from the engine, so that a pass can end in peace when an item's setter destroys the engine.
struct LayoutEngine::State {
    LayoutSystem system;
    LayoutItem* root = nullptr; // whose tree has been read
    bool isCurrent = false;     // what has been read is still so
    bool isInPass = false;
    bool passIsAsked = false; // from within a pass
    bool engineIsGone = false;
    std::vector<std::optional<CGSize>> contentSizes; // by node, as last set

    std::vector<bool> conflictIsTold; // since the last reading
    std::set<std::string> told;       // since the last reading
    std::set<std::string> toldLastReading;

    void readIfNeeded(LayoutItem& item);
    void place();
    void passUntilSettled(LayoutItem& item);
    void tell();
    void tell(const std::string& message);
};

void LayoutEngine::State::readIfNeeded(LayoutItem& item) {
    if (isCurrent && root == &item && !system.givenFramesHaveChanged())
        return;
    isCurrent = false;
    system.read(item);
    root = &item;
    isCurrent = true;
    toldLastReading = std::exchange(told, {});
    conflictIsTold.clear();
    contentSizes.assign(system.nodes().size(), std::nullopt);
}

void LayoutEngine::State::place() {
    const auto& nodes = system.nodes();
    // The setters are other people's code: after each of them the tree may be another.
    for (std::size_t i = 1; i < nodes.size() && isCurrent; ++i) {
        const LayoutSystem::Node& node = nodes[i];
        if (!node.frameIsGiven) {
            const CGRect frame = system.frame(node);
            if (frame != node.item->layoutFrame())
                node.item->setLayoutFrame(frame);
        }
        if (isCurrent && node.contentIsConstrained && contentSizes[i] != system.contentSize(node)) {
            contentSizes[i] = system.contentSize(node);
            node.item->setLayoutContentSize(*contentSizes[i]);
        }
    }
}

void LayoutEngine::State::passUntilSettled(LayoutItem& item) {
    for (int pass = 0; pass < kMostPasses && !engineIsGone; ++pass) {
        passIsAsked = false;
        readIfNeeded(item);
        system.solve(finiteRect(item.layoutFrame()).size);
        place();
        if (isCurrent && !passIsAsked && !system.givenFramesHaveChanged())
            break;
    }
}

void LayoutEngine::State::tell() {
    if (!diagnosticsWanted())
        return;
    std::vector<std::string> messages;
    if (told.empty())
        messages = system.complaints();
    for (const int conflict : system.conflicts()) {
        if (conflictIsTold.size() <= static_cast<std::size_t>(conflict))
            conflictIsTold.resize(static_cast<std::size_t>(conflict) + 1);
        if (!conflictIsTold[conflict])
            messages.push_back(system.describeConflict(conflict));
        conflictIsTold[conflict] = true;
    }
    for (const std::string& message : messages) {
        if (told.insert(message).second && !toldLastReading.contains(message))
            diagnostic(message);
    }
}

LayoutEngine::LayoutEngine() : state_(std::make_shared<State>()) {}

LayoutEngine::~LayoutEngine() {
    state_->isCurrent = false;
    state_->engineIsGone = true;
}

void LayoutEngine::invalidate() {
    state_->isCurrent = false;
}

void LayoutEngine::layout(LayoutItem& root) {
    const std::shared_ptr<State> state = state_;
    if (state->isInPass) {
        state->passIsAsked = true;
        return;
    }
    state->isInPass = true;
    try {
        state->passUntilSettled(root);
    } catch (...) {
        state->isInPass = false;
        state->isCurrent = false; // how far it came is not known
        throw;
    }
    state->isInPass = false;
    if (state->isCurrent)
        state->tell();
}

CGSize LayoutEngine::fittingSize(LayoutItem& root, CGSize target, UILayoutPriority horizontal,
                                 UILayoutPriority vertical) {
    LayoutSystem system;
    system.read(root, LayoutSystem::Fitting{target, {horizontal, vertical}});
    system.solve({});
    return system.rootSize();
}

} // namespace tesmar
