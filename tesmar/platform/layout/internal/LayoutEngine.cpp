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

// Keeps an item whose setter always changes the system from hanging the host.
constexpr int kMaxPasses = 4;

} // namespace

// Separate from the engine, so that a pass survives an item's setter that destroys the engine.
struct LayoutEngine::State {
    LayoutSystem system;
    LayoutItem* root = nullptr; // of the tree that `system` was read from
    bool isCurrent = false;     // `system` still describes the tree
    bool isInPass = false;
    bool isPassRequested = false; // by a layout() during a pass
    bool isEngineDestroyed = false;
    std::vector<std::optional<CGSize>> contentSizes; // by node, as last set

    // Since the tree was last read.
    std::vector<bool> isConflictReported; // by conflict
    std::set<std::string> reported;
    // Between the last reading of the tree and the one before.
    std::set<std::string> reportedBefore;

    void readIfNeeded(LayoutItem& item);
    void applyFrames();
    void layoutUntilStable(LayoutItem& item);
    void report();
};

void LayoutEngine::State::readIfNeeded(LayoutItem& item) {
    if (isCurrent && root == &item && !system.fixedFramesHaveChanged())
        return;
    isCurrent = false;
    system.read(item);
    root = &item;
    isCurrent = true;
    reportedBefore = std::exchange(reported, {});
    isConflictReported.clear();
    contentSizes.assign(system.nodes().size(), std::nullopt);
}

void LayoutEngine::State::applyFrames() {
    const auto& nodes = system.nodes();
    // Each setter may invalidate the system, after which the nodes' items may be dangling.
    for (std::size_t i = 1; i < nodes.size() && isCurrent; ++i) {
        const LayoutSystem::Node& node = nodes[i];
        if (!node.frameIsFixed) {
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

void LayoutEngine::State::layoutUntilStable(LayoutItem& item) {
    for (int pass = 0; pass < kMaxPasses && !isEngineDestroyed; ++pass) {
        isPassRequested = false;
        readIfNeeded(item);
        system.solve(finiteRect(item.layoutFrame()).size);
        applyFrames();
        if (isCurrent && !isPassRequested && !system.fixedFramesHaveChanged())
            break;
    }
}

void LayoutEngine::State::report() {
    if (!diagnosticsWanted())
        return;
    std::vector<std::string> messages;
    if (reported.empty())
        messages = system.ignoredConstraints();
    for (const int conflict : system.conflicts()) {
        if (isConflictReported.size() <= static_cast<std::size_t>(conflict))
            isConflictReported.resize(static_cast<std::size_t>(conflict) + 1);
        if (!isConflictReported[conflict])
            messages.push_back(system.describeConflict(conflict));
        isConflictReported[conflict] = true;
    }
    for (const std::string& message : messages) {
        if (reported.insert(message).second && !reportedBefore.contains(message))
            diagnostic(message);
    }
}

LayoutEngine::LayoutEngine() : state_(std::make_shared<State>()) {}

LayoutEngine::~LayoutEngine() {
    state_->isCurrent = false;
    state_->isEngineDestroyed = true;
}

void LayoutEngine::invalidate() {
    state_->isCurrent = false;
}

void LayoutEngine::layout(LayoutItem& root) {
    const std::shared_ptr<State> state = state_;
    if (state->isInPass) {
        state->isPassRequested = true;
        return;
    }
    state->isInPass = true;
    try {
        state->layoutUntilStable(root);
    } catch (...) {
        state->isInPass = false;
        state->isCurrent = false; // the system may be incomplete
        throw;
    }
    state->isInPass = false;
    if (state->isCurrent)
        state->report();
}

CGSize LayoutEngine::fittingSize(LayoutItem& root, CGSize target) {
    LayoutSystem system;
    system.readForFitting(root, target);
    system.solve({});
    return system.rootSize();
}

} // namespace tesmar
