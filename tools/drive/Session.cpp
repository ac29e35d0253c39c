#include "tools/drive/Session.h"

#include "tesmar/controls/library_bundle.h"
#include "tesmar/model/TESMARConfig.h"
#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/text/FontRegistry.h"
#include "tools/drive/fault.h"
#include "tools/drive/inspection.h"

#include <algorithm>
#include <cmath>

namespace tesmar::drive {
namespace {

constexpr CGSize kWindowSize{568, 320};
constexpr std::int64_t kFinger = 0;
constexpr std::int64_t kOtherFinger = 1;

// What an operation of the panel gets when a script sends it without arguments.
std::vector<std::variant<Json, ViewName>> usualArguments(std::string_view selector) {
    if (selector == "CCSwitchValueDidChange:")
        return {ViewName{"CCSwitch"}};
    if (selector == "scrollViewWillBeginDragging:")
        return {ViewName{"containerScrollView"}};
    if (selector == "scrollViewDidEndDragging:willDecelerate:")
        return {ViewName{"containerScrollView"}, Json(false)};
    if (selector == "viewWillAppear:" || selector == "viewDidAppear:" ||
        selector == "viewWillDisappear:")
        return {Json(false)};
    return {};
}

} // namespace

Session::Session(Output output)
    : output_(std::make_shared<Output>(std::move(output))), host_(kWindowSize) {
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.drive"));
    NSUserDefaults::standardUserDefaults()->setPreferencesPath(home_.path() / "preferences.plist");
    // A panel may outlive the session in a pending message.
    report_ = [this, alive = std::weak_ptr(output_)](const char* event, Json fields) {
        const auto listener = alive.lock();
        if (!listener)
            return;
        Json line{{"event", event}};
        line.update(fields);
        line["at"] = measure(host_.now());
        (*listener)(line);
    };
}

Session::~Session() {
    NSUserDefaults::standardUserDefaults()->setPreferencesPath("");
}

void Session::run(const Command& command) {
    std::visit([this](const auto& c) { perform(c); }, command);
}

void Session::answer(std::string_view question, Json json) {
    Json line;
    line[std::string(question)] = std::move(json);
    (*output_)(line);
}

// --- What a host does ---------------------------------------------------------------------------

ReportingPanel& Session::panel() {
    if (!panel_)
        throw Fault("there is no panel; create one first");
    return *panel_;
}

void Session::perform(const UseWindow& command) {
    host_.resize(command.size, command.scale);
    repainted_.clear();
}

void Session::perform(const UsePreferences& command) {
    NSUserDefaults::standardUserDefaults()->setPreferencesPath(command.path);
}

void Session::perform(const OfferFaces& command) {
    if (everCreated_)
        throw Fault("faces: too late; it must stand before create");
    FontRegistry::restrictTo(command.names);
}

void Session::perform(const Create&) {
    everCreated_ = true;
    panel_ = make<ReportingPanel>();
    panel_->setReport(report_);
}

void Session::perform(const SetAutoHideInterval& command) {
    panel().setAutoHideInterval(command.seconds);
}

void Session::perform(const SetRememberChangedStyle& command) {
    panel().setRememberChangedStyle(command.remember);
}

void Session::perform(const SetDelegate& command) {
    panel().setDelegate(command.present ? std::make_shared<ReportingDelegate>(report_, panel_)
                                        : nullptr);
}

void Session::perform(const SetCCEnabled& command) {
    panel().setCCEnabled(command.enabled);
}

void Session::perform(const Assign& command) {
    panel().setCCStyleAttributes(toDictionary(command.attributes));
}

void Session::perform(const Present& command) {
    if (panel().presentingViewController() && !panel().isBeingDismissed())
        throw Fault("present: the panel is presented already");
    panel().setModalPresentationStyle(command.style);
    host_.window()->presentViewController(panel_, false);
}

void Session::perform(const Dismiss&) {
    const auto controller = panel_ ? panel_ : host_.window()->presentedViewController();
    if (!controller)
        throw Fault("dismiss: there is no panel");
    controller->dismissViewControllerAnimated(false);
}

void Session::perform(const Release&) {
    panel();
    panel_.reset();
}

void Session::perform(const Send& command) {
    const Selector selector(command.selector);
    if (!panel().respondsToSelector(selector))
        throw Fault("send: the panel publishes no " + command.selector);
    const auto given =
        command.arguments.empty() ? usualArguments(command.selector) : command.arguments;
    if (given.size() != selector.argumentCount())
        throw Fault("send: " + command.selector + " takes " +
                    std::to_string(selector.argumentCount()) + " arguments, not " +
                    std::to_string(given.size()));
    std::vector<Value> arguments;
    for (const auto& argument : given) {
        if (const auto* json = std::get_if<Json>(&argument))
            arguments.push_back(toArgument(*json));
        else
            arguments.emplace_back(Ref<NSObject>(ref(place(std::get<ViewName>(argument)).view)));
    }
    const Value result = performSelector(panel(), selector, arguments);
    if (!std::holds_alternative<std::monostate>(result))
        answer("send", fromValue(result));
}

// --- What a viewer does -------------------------------------------------------------------------

Place Session::place(const ViewName& name) {
    host_.window()->layoutIfNeeded();
    Place found;
    if (panel_)
        found = placeNamed(*panel_->view(), name.text);
    if (!found.view)
        found = placeNamed(*host_.window(), name.text);
    if (!found.view)
        throw Fault("no view is named " + name.text + "; tree lists those that there are");
    return found;
}

CGPoint Session::target(const ViewName& name) {
    const Place there = place(name);
    if (!there.view->window())
        throw Fault(name.text + " is not in the window; present the panel first");
    const CGRect visible = there.visibleFrame();
    if (visible.isEmpty())
        throw Fault("nothing of " + name.text + " is visible; reveal " + name.text +
                    " scrolls it into view");
    return visible.center();
}

void Session::perform(const PressEscape&) {
    host_.window()->key(UIKey::escape, NSRunLoop::mainRunLoop().now());
}

void Session::perform(const Advance& command) {
    if (host_.now() + command.seconds > kLongestSession)
        throw Fault("advance: no session lasts longer than " + text(number(kLongestSession)) +
                    " seconds");
    host_.advance(command.seconds);
}

void Session::perform(const Tap& command) {
    host_.tap(target(command.view), kOtherFinger);
}

void Session::perform(const Touch& command) {
    const bool lands = command.phase == UITouchPhase::began;
    if (lands == fingerIsDown_)
        throw Fault(lands ? "touch down: the finger is down already"
                          : "touch: the finger is not down");
    const auto* point = std::get_if<CGPoint>(&command.at);
    const CGPoint at = point ? *point : target(std::get<ViewName>(command.at));
    fingerIsDown_ = command.phase != UITouchPhase::ended;
    host_.touch(command.phase, at, kFinger);
}

void Session::perform(const Drag& command) {
    host_.drag(target(command.view), command.distance, command.seconds, kOtherFinger);
}

void Session::perform(const Reveal& command) {
    const Place there = place(command.view);
    if (!there.view->window())
        throw Fault(command.view.text + " is not in the window; present the panel first");
    for (auto* scroll = UIScrollView::enclosing(there.view->superview()); scroll;
         scroll = UIScrollView::enclosing(scroll->superview())) {
        CGRect inContent = there.frame();
        inContent.origin = scroll->convertPointFrom(inContent.origin, nullptr);
        scroll->scrollRectToVisible(inContent, false);
    }
}

// --- Questions ----------------------------------------------------------------------------------

void Session::perform(const Ask& command) {
    answer(wordOf(command.question), answerTo(command.question));
}

Json Session::answerTo(Question question) {
    switch (question) {
    case Question::style:
        return fromDictionary(panel().CCStyleAttributes());
    case Question::stored:
        return fromDictionary(TESMARConfig::sessionClosedCaptureStyle());
    case Question::sessionOrDefault:
        return fromDictionary(TESMARConfig::sessionOrDefaultClosedCaptureStyle());
    case Question::fonts:
        return UIFont::CCSupportedFonts();
    case Question::methods:
        return TESMARViewController::classObject().publishedSelectors();
    case Question::tree:
        return tree();
    case Question::damage:
        return damage();
    case Question::pending:
        return pending();
    }
    return nullptr;
}

void Session::perform(const AskSizes& command) {
    answer("sizes", fromValue(UIFont::fontSizesForFontName(command.fontName)));
}

void Session::perform(const AskView& command) {
    answer("get", describe(place(command.view)));
}

Json Session::tree() {
    host_.window()->layoutIfNeeded();
    std::vector<Place> places = namedPlaces(*host_.window());
    if (panel_ && !panel_->view()->window())
        for (const Place& p : namedPlaces(*panel_->view()))
            places.push_back(p);
    Json json = Json::array();
    for (const Place& p : places)
        json.push_back(describe(p));
    return json;
}

void Session::render() {
    const auto rects = host_.render();
    repainted_.insert(repainted_.end(), rects.begin(), rects.end());
}

Json Session::damage() {
    render();
    Json json = Json::array();
    for (const PixelRect& r : repainted_)
        json.push_back({r.x, r.y, r.width, r.height});
    repainted_.clear();
    return json;
}

Json Session::pending() {
    const NSRunLoop& loop = NSRunLoop::mainRunLoop();
    const auto deadline = loop.nextDeadline();
    return deadline ? measure(std::max(0.0, *deadline - loop.now())) : Json(nullptr);
}

void Session::perform(const TakePicture& command) {
    render();
    if (!host_.writePNG(command.path))
        throw Fault("shot: cannot write " + command.path);
}

} // namespace tesmar::drive
