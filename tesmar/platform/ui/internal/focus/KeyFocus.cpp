#include "tesmar/platform/ui/internal/focus/KeyFocus.h"

#include "tesmar/platform/ui/UIViewController.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/TouchDispatcher.h"
#include "tesmar/platform/ui/internal/short_touch.h"

#include <algorithm>
#include <utility>

namespace tesmar {
namespace {

bool isArrow(UIKey key) {
    return key == UIKey::up || key == UIKey::down || key == UIKey::left || key == UIKey::right;
}

FocusGrid gridOf(const std::vector<FocusPlace>& places) {
    std::vector<FocusGrid::Cell> cells;
    cells.reserve(places.size());
    for (const FocusPlace& place : places)
        cells.push_back(place.cell);
    return FocusGrid(std::move(cells));
}

} // namespace

KeyFocus::KeyFocus(UIWindow& window, const TouchDispatcher& touches)
    : window_(window), touches_(touches), ring_(window) {}

// --- Where the focus is -------------------------------------------------------------------------

// A controller that is presented again is in another container.
bool KeyFocus::isIn(const UIViewController* controller) const {
    const auto container = container_.lock();
    return controller && container && controller_.lock().get() == controller &&
           window_.presentedViewController().get() == controller &&
           const_cast<UIViewController*>(controller)->view()->superview() == container.get();
}

void KeyFocus::startIn(const Ref<UIViewController>& controller) {
    if (isIn(controller.get()))
        return;
    leave();
    controller_ = controller;
    container_ = refTo(controller->view()->superview());
}

void KeyFocus::leave() {
    controller_.reset();
    view_.reset();
    isPlaced_ = false;
    isShown_ = false;
    ring_.hide();
    repeats_.forget();
}

void KeyFocus::put(const FocusPlace& place) {
    view_ = place.view;
    index_ = place.index;
    identifier_ = place.identifier;
    middle_ = place.cell.rect.center();
    isPlaced_ = true;
}

bool KeyFocus::hasMovedTo(const FocusPlace& place) const {
    return view_.lock() != place.view || index_ != place.index;
}

// The place of the focus; if that is gone, the next best.
std::size_t KeyFocus::locate(const std::vector<FocusPlace>& places, const FocusGrid& grid,
                             const UIViewController& controller) const {
    const auto find = [&](const auto& isWanted) -> std::optional<std::size_t> {
        const auto found = std::ranges::find_if(places, isWanted);
        return found == places.end() ? std::nullopt : std::optional(found - places.begin());
    };
    const auto named = [&](const std::string& name) {
        return find([&](const FocusPlace& p) { return !name.empty() && p.identifier == name; });
    };
    if (!isPlaced_)
        return named(controller.initialFocus()).value_or(grid.start());
    const auto view = view_.lock();
    if (const auto same =
            find([&](const FocusPlace& p) { return p.view == view && p.index == index_; }))
        return *same;
    return named(identifier_).value_or(grid.nearest(middle_));
}

std::optional<ShownCell> KeyFocus::shown() const {
    const auto controller = controller_.lock();
    const auto view = view_.lock();
    return controller && view ? shownCell(*controller->view(), *view, index_) : std::nullopt;
}

std::optional<UIFocus> KeyFocus::focus() {
    const auto controller = controller_.lock();
    if (!isIn(controller.get()))
        return std::nullopt;
    adoptTouch();
    const auto cell = shown();
    return cell ? std::optional(UIFocus{identifier_, cell->frame, isShown_}) : std::nullopt;
}

// --- Touches ------------------------------------------------------------------------------------

void KeyFocus::touchLanded() {
    isShown_ = false;
    ring_.hide();
    adoptsTouch_ = true;
}

void KeyFocus::adoptTouch() {
    const auto controller = controller_.lock();
    if (!std::exchange(adoptsTouch_, false) || !controller)
        return;
    const auto [landed, point] = touches_.lastLanding();
    const auto view = as<UIView>(landed.lock());
    if (!view || !view->isDescendantOf(controller->view().get()))
        return;
    const auto all = focusPlaces(*controller->view());
    std::vector<FocusPlace> places;
    std::ranges::copy_if(all, std::back_inserter(places),
                         [&](const FocusPlace& place) { return place.view == view; });
    const auto away = [&, at = point](const FocusPlace& place) {
        const CGPoint d = view->focusCells()[place.index].rect.center() - at;
        return std::hypot(d.x, d.y);
    };
    if (!places.empty())
        put(*std::ranges::min_element(places, {}, away));
}

// --- Keys ---------------------------------------------------------------------------------------

bool KeyFocus::isCurrent(const UIViewController& controller) const {
    return isIn(&controller) && !controller.isBeingDismissed();
}

bool KeyFocus::key(UIKey key, UIKeyRepeat repeat, double time,
                   const Ref<UIViewController>& controller, UIEdgeKeys edge) {
    startIn(controller);
    if (!repeats_.acts(key, repeat, time))
        return true;
    controller->willHandleKey();
    if (!isCurrent(*controller))
        return true;
    window_.layoutIfNeeded();
    adoptTouch();
    const auto places = focusPlaces(*controller->view());
    const bool isUsedAtEdge = edge == UIEdgeKeys::taken || !isArrow(key);
    if (places.empty())
        return isUsedAtEdge;
    const FocusGrid grid = gridOf(places);
    const FocusPlace& place = places[locate(places, grid, *controller)];
    const bool isGone = isShown_ && hasMovedTo(place); // since the last frame
    put(place);
    if (isGone) {
        controller->focusDidMove(place.identifier);
        if (!isCurrent(*controller))
            return true;
    }
    if (!isShown_) {
        column_ = middle_.x;
        showOn(place, places, *controller);
        return true;
    }
    if (key == UIKey::select || key == UIKey::increment || key == UIKey::decrement) {
        reveal(place, places);
        if (isCurrent(*controller))
            operate(key == UIKey::select ? UIFocusTarget{place.view, place.index}
                                         : stepTarget(*place.view, key),
                    *controller);
        return true;
    }
    const auto to =
        grid.destination(key, static_cast<std::size_t>(&place - places.data()), column_);
    if (!to) {
        if (isUsedAtEdge)
            reveal(place, places);
        return isUsedAtEdge;
    }
    if (key != UIKey::up && key != UIKey::down)
        column_ = places[*to].cell.rect.midX();
    showOn(places[*to], places, *controller);
    return true;
}

bool KeyFocus::moveTo(std::string_view identifier, const Ref<UIViewController>& controller) {
    const auto places = focusPlaces(*controller->view());
    const auto wanted = std::ranges::find(places, identifier, &FocusPlace::identifier);
    if (identifier.empty() || wanted == places.end())
        return false;
    startIn(controller);
    adoptsTouch_ = false;
    column_ = wanted->cell.rect.midX();
    showOn(*wanted, places, *controller);
    return true;
}

void KeyFocus::showOn(const FocusPlace& place, const std::vector<FocusPlace>& all,
                      UIViewController& controller) {
    const bool isNews = !isShown_ || hasMovedTo(place);
    put(place);
    isShown_ = true;
    reveal(place, all);
    if (const auto cell = isCurrent(controller) ? shown() : std::nullopt; cell && isShown_)
        ring_.slideTo(*cell);
    if (isNews)
        controller.focusDidMove(place.identifier);
}

UIFocusTarget KeyFocus::stepTarget(UIView& from, UIKey key) {
    const auto step = key == UIKey::increment ? UIFocusStep::increment : UIFocusStep::decrement;
    for (UIView* view = &from; view; view = view->superview())
        if (auto target = view->focusStepTarget(step); target.view)
            return target;
    return {};
}

// As a short touch in the middle of the cell.
void KeyFocus::operate(const UIFocusTarget& target, const UIViewController& controller) {
    const auto view = target.view;
    if (!view)
        return;
    const auto cells = view->focusCells();
    if (target.cell >= cells.size())
        return;
    shortTouch(*view, cells[target.cell].rect.center(), [&] { return isCurrent(controller); });
}

// --- Frames -------------------------------------------------------------------------------------

void KeyFocus::follow() {
    if (!isShown_)
        return;
    const auto controller = controller_.lock();
    if (!isIn(controller.get())) {
        leave();
        return;
    }
    const bool hasMoved = !controller->isBeingDismissed() && stayUsable(*controller);
    if (const auto cell = shown())
        ring_.follow(*cell);
    else
        ring_.hide();
    if (hasMoved)
        controller->focusDidMove(std::string(identifier_));
}

// Returns whether the focus has moved.
bool KeyFocus::stayUsable(UIViewController& controller) {
    const auto view = view_.lock();
    if (view && isUsable(*controller.view(), *view, index_))
        return false;
    const auto places = focusPlaces(*controller.view());
    if (places.empty()) {
        view_.reset();
        return false;
    }
    put(places[locate(places, gridOf(places), controller)]);
    column_ = middle_.x;
    return true;
}

} // namespace tesmar
