// One run of a script: a headless host, the panel in it, and whoever listens.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tools/drive/Command.h"
#include "tools/drive/Place.h"
#include "tools/drive/TemporaryDirectory.h"
#include "tools/drive/events.h"

#include <functional>
#include <string>
#include <vector>

namespace tesmar::drive {

class Session {
  public:
    // Takes answers and events, in the order in which things happen.
    using Output = std::function<void(const Json&)>;

    // A window of 568 × 320 points at scale 1, no panel, and preferences of its own, which go with
    // the session. One session at a time: the library has one clock and one preferences store.
    explicit Session(Output output);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Throws a Fault when the command can't be carried out; then nothing has changed.
    void run(const Command& command);

  private:
    void perform(const UseWindow& command);
    void perform(const UsePreferences& command);
    void perform(const OfferFaces& command);
    void perform(const Create& command);
    void perform(const SetAutoHideInterval& command);
    void perform(const SetRememberChangedStyle& command);
    void perform(const SetDelegate& command);
    void perform(const SetCCEnabled& command);
    void perform(const Assign& command);
    void perform(const Present& command);
    void perform(const Dismiss& command);
    void perform(const Release& command);
    void perform(const Send& command);
    void perform(const PressEscape& command);
    void perform(const Advance& command);
    void perform(const Tap& command);
    void perform(const Touch& command);
    void perform(const Drag& command);
    void perform(const Reveal& command);
    void perform(const Ask& command);
    void perform(const AskSizes& command);
    void perform(const AskView& command);
    void perform(const TakePicture& command);

    void answer(std::string_view question, Json json);
    Json answerTo(Question question);
    Json tree();
    Json damage();
    Json pending();

    ReportingPanel& panel();
    Place place(const ViewName& name);
    // Where a finger goes for that view: the middle of what is visible of it.
    CGPoint target(const ViewName& name);
    void render();

    const std::shared_ptr<Output> output_; // owned here alone: late reports find it gone
    HeadlessHost host_;
    const TemporaryDirectory home_; // of the preferences, unless the script chooses a file
    Report report_;
    Ref<ReportingPanel> panel_; // null before `create` and after `release`
    bool everCreated_ = false;
    bool fingerIsDown_ = false;
    std::vector<PixelRect> repainted_; // since `damage` was last asked
};

} // namespace tesmar::drive
