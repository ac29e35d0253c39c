#include "tools/drive/Session.h"

#include "tesmar/controls/library_bundle.h"
#include "tesmar/model/TESMARConfig.h"
#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/text/FontRegistry.h"
#include "tools/drive/accessible.h"
#include "tools/drive/fault.h"
#include "tools/drive/inspection.h"

#include <algorithm>
#include <cmath>

namespace tesmar::drive {
namespace {

constexpr CGSize kWindowSize{568, 320};
// Touch identifiers: `tap` and `drag` use a finger of their own, beside that of `touch`.
constexpr std::int64_t kTouchFinger = 0;
constexpr std::int64_t kGestureFinger = 1;
constexpr int kCaptionLines = 2;

// The arguments of a selector that a script sends without any.
std::vector<std::variant<Json, ViewName>> defaultArguments(std::string_view selector) {
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
    // A pending message may keep the panel alive after the session.
    report_ = [this, weakOutput = std::weak_ptr(output_)](const char* event, const Json& fields) {
        const auto sink = weakOutput.lock();
        if (!sink)
            return;
        Json line{{"event", event}};
        line.update(fields);
        line["at"] = rounded(host_.now());
        (*sink)(line);
    };
}

Session::~Session() {
    NSUserDefaults::standardUserDefaults()->setPreferencesPath("");
}

void Session::run(const Command& command) {
    std::visit([this](const auto& c) { perform(c); }, command);
    if (captions_)
        layOutCaptions();
}

void Session::outputResult(std::string_view key, Json result) {
    Json line;
    line[std::string(key)] = std::move(result);
    (*output_)(line);
}

// --- Host actions -------------------------------------------------------------------------------

TESMARViewController& Session::panel() {
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

void Session::perform(const RestrictFonts& command) {
    if (hasCreatedPanel_)
        throw Fault("faces: too late; it must stand before create");
    FontRegistry::restrictTo(command.names);
}

void Session::perform(const Create& command) {
    hasCreatedPanel_ = true;
    panel_ = makeReportingPanel(command.kind, report_);
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

void Session::perform(const SetLanguage& command) {
    outputResult("language", panel().setLanguage(command.tag));
}

void Session::perform(const SetTextScale& command) {
    panel().setTextScale(command.scale);
}

void Session::perform(const SetContrast& command) {
    panel().setContrast(command.contrast);
}

void Session::perform(const SetMirroring& command) {
    panel().setMirroring(command.mirroring);
}

void Session::perform(const ShowCaptions& command) {
    if (!captions_) {
        captions_ = make<TESMARCaptionView>();
        captions_->setAccessibilityIdentifier("captions");
        host_.window()->rootViewController()->view()->addSubview(captions_);
        layOutCaptions();
    }
    captions_->setText(command.text);
}

void Session::layOutCaptions() {
    captions_->setArea({{0, 0}, host_.window()->frame().size});
    captions_->setStyle(panel_ ? Ref<NSDictionary>(panel_->CCStyleAttributes()) : nullptr);
    host_.window()->setCaptionArea(captions_->areaForLines(kCaptionLines));
}

void Session::perform(const Present& command) {
    if (panel().presentingViewController() && !panel().isBeingDismissed())
        throw Fault("present: the panel is presented already");
    if (const auto extended = as<TESMARExtendedViewController>(panel_))
        extended->setPreview(captions_);
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
        command.arguments.empty() ? defaultArguments(command.selector) : command.arguments;
    if (given.size() != selector.argumentCount())
        throw Fault("send: " + command.selector + " takes " +
                    std::to_string(selector.argumentCount()) + " arguments, not " +
                    std::to_string(given.size()));
    std::vector<Value> arguments;
    for (const auto& argument : given) {
        if (const auto* json = std::get_if<Json>(&argument))
            arguments.push_back(toArgument(*json));
        else
            arguments.emplace_back(Ref<NSObject>(refTo(place(std::get<ViewName>(argument)).view)));
    }
    const auto result = performSelectorIfItFits(panel(), selector, arguments);
    if (!result)
        throw Fault("send: " + command.selector + " takes arguments of other types");
    if (!std::holds_alternative<std::monostate>(*result))
        outputResult("send", fromValue(*result));
}

// --- Viewer actions -----------------------------------------------------------------------------

Place Session::place(const ViewName& name) {
    host_.window()->layoutIfNeeded();
    Place found;
    if (panel_)
        found = findPlace(*panel_->view(), name.text);
    if (!found.view)
        found = findPlace(*host_.window(), name.text);
    if (!found.view)
        throw Fault("no view is named " + name.text + "; tree lists those that there are");
    return found;
}

CGPoint Session::touchPoint(const ViewName& name) {
    const Place target = place(name);
    if (!target.view->window())
        throw Fault(name.text + " is not in the window; present the panel first");
    const CGRect visible = target.visibleFrame();
    if (visible.isEmpty())
        throw Fault("nothing of " + name.text + " is visible; reveal " + name.text +
                    " scrolls it into view");
    return visible.center();
}

void Session::perform(const PressKey& command) {
    host_.key(command.key);
}

void Session::perform(const Advance& command) {
    if (host_.now() + command.seconds > kMaxSessionSeconds)
        throw Fault("advance: a session lasts at most " + serialize(number(kMaxSessionSeconds)) +
                    " seconds");
    host_.advance(command.seconds);
}

void Session::perform(const Tap& command) {
    host_.tap(touchPoint(command.view), kGestureFinger);
}

void Session::perform(const Touch& command) {
    const bool begins = command.phase == UITouchPhase::began;
    if (begins == fingerIsDown_)
        throw Fault(begins ? "touch down: the finger is down already"
                           : "touch: the finger is not down");
    const auto* point = std::get_if<CGPoint>(&command.at);
    const CGPoint at = point ? *point : touchPoint(std::get<ViewName>(command.at));
    fingerIsDown_ = command.phase != UITouchPhase::ended;
    host_.touch(command.phase, at, kTouchFinger);
}

void Session::perform(const Drag& command) {
    host_.drag(touchPoint(command.view), command.distance, command.seconds, kGestureFinger);
}

void Session::perform(const Reveal& command) {
    const Place target = place(command.view);
    if (!target.view->window())
        throw Fault(command.view.text + " is not in the window; present the panel first");
    for (auto* scroll = UIScrollView::enclosing(target.view->superview()); scroll;
         scroll = UIScrollView::enclosing(scroll->superview())) {
        CGRect inContent = target.frame();
        inContent.origin = scroll->convertPointFrom(inContent.origin, nullptr);
        scroll->scrollRectToVisible(inContent, false);
    }
}

// --- Queries ------------------------------------------------------------------------------------

void Session::perform(const RunQuery& command) {
    outputResult(nameOf(command.query), resultOf(command.query));
}

Json Session::resultOf(Query query) {
    switch (query) {
    case Query::style:
        return fromDictionary(panel().CCStyleAttributes());
    case Query::stored:
        return fromDictionary(TESMARConfig::sessionClosedCaptureStyle());
    case Query::sessionOrDefault:
        return fromDictionary(TESMARConfig::sessionOrDefaultClosedCaptureStyle());
    case Query::fonts:
        return UIFont::CCSupportedFonts();
    case Query::methods:
        return TESMARViewController::classObject().publishedSelectors();
    case Query::tree:
        return tree();
    case Query::focus:
        return focus();
    case Query::damage:
        return damage();
    case Query::pending:
        return pending();
    }
    return nullptr;
}

void Session::perform(const QuerySizes& command) {
    outputResult("sizes", fromValue(UIFont::fontSizesForFontName(command.fontName)));
}

void Session::perform(const QueryView& command) {
    outputResult("get", describe(place(command.view)));
}

void Session::perform(const QueryAccessibleTree&) {
    outputResult("tree", describe(accessibleTree(*host_.window())));
}

void Session::perform(const Perform& command) {
    if (!performAccessibleAction(*host_.window(), command.identifier, command.action, host_.now()))
        throw Fault("perform: " + command.identifier + " does not offer " +
                    std::string(nameOf(command.action)) + " now; see tree accessible");
}

Json Session::tree() {
    host_.window()->layoutIfNeeded();
    std::vector<Place> places = findPlaces(*host_.window());
    if (panel_ && !panel_->view()->window())
        for (const Place& p : findPlaces(*panel_->view()))
            places.push_back(p);
    Json json = Json::array();
    for (const Place& p : places)
        json.push_back(describe(p));
    return json;
}

Json Session::focus() {
    const auto focus = host_.window()->focus();
    return focus ? Json(focus->identifier) : Json(nullptr);
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
    return deadline ? rounded(std::max(0.0, *deadline - loop.now())) : Json(nullptr);
}

void Session::perform(const TakePicture& command) {
    render();
    if (!host_.writePNG(command.path))
        throw Fault("shot: cannot write " + command.path);
}

} // namespace tesmar::drive
