#include "tesmar/platform/foundation/internal/comparison.h"

#include <set>
#include <utility>

namespace tesmar {
namespace {

struct Comparison {
    int depth = 0;
    std::set<std::pair<const NSObject*, const NSObject*>> seen; // below the outermost pair
};

// On the stack of the outermost call, so that nothing is left for the end of the thread.
thread_local Comparison* current = nullptr;

} // namespace

bool compareCollections(const NSObject& a, const NSObject& b,
                        const std::function<bool()>& compare) {
    constexpr int kDeepest = 1000;
    if (!current) {
        Comparison outermost;
        struct Scope {
            ~Scope() { current = nullptr; }
        } const scope;
        current = &outermost;
        return compare();
    }
    if (current->depth == kDeepest)
        return false;
    if (!current->seen.emplace(&a, &b).second)
        return true;
    ++current->depth;
    const bool isEqual = compare(); // an exception ends the whole comparison
    --current->depth;
    return isEqual;
}

} // namespace tesmar
