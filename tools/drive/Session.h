// Runs the commands of one script: owns the headless host, the panel and its delegate.
#pragma once

#include "tesmar/captions/TESMARCaptionView.h"
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
    // Called with each result and event, one JSON object each, in the order in which they happen.
    using Output = std::function<void(const Json&)>;

    // Starts with a window of 568 × 320 points at scale 1, no panel, and new preferences in a
    // temporary directory that the destructor deletes. Only one session may exist at a time: the
    // library has one clock and one preferences store.
    explicit Session(Output output);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Throws a Fault when the command cannot be run; then nothing has changed.
    void run(const Command& command);

  private:
    void perform(const UseWindow& command);
    void perform(const UsePreferences& command);
    void perform(const RestrictFonts& command);
    void perform(const Create& command);
    void perform(const SetAutoHideInterval& command);
    void perform(const SetRememberChangedStyle& command);
    void perform(const SetDelegate& command);
    void perform(const SetCCEnabled& command);
    void perform(const Assign& command);
    void perform(const SetLanguage& command);
    void perform(const SetTextScale& command);
    void perform(const SetContrast& command);
    void perform(const SetMirroring& command);
    void perform(const ShowCaptions& command);
    void perform(const Present& command);
    void perform(const Dismiss& command);
    void perform(const Release& command);
    void perform(const Send& command);
    void perform(const PressKey& command);
    void perform(const Advance& command);
    void perform(const Tap& command);
    void perform(const Touch& command);
    void perform(const Drag& command);
    void perform(const Reveal& command);
    void perform(const RunQuery& command);
    void perform(const QuerySizes& command);
    void perform(const QueryView& command);
    void perform(const QueryAccessibleTree& command);
    void perform(const Perform& command);
    void perform(const TakePicture& command);

    void layOutCaptions();
    // Outputs {key: result}.
    void outputResult(std::string_view key, Json result);
    Json resultOf(Query query);
    Json tree();
    Json focus();
    Json damage();
    Json pending();

    // Throws a Fault when there is none.
    TESMARViewController& panel();
    // Throws a Fault when no view has that name.
    Place place(const ViewName& name);
    // The middle of the view's visible part, in the window. Throws a Fault when nothing is visible.
    CGPoint touchPoint(const ViewName& name);
    void render();

    const std::shared_ptr<Output>
        output_; // reports hold it weakly: a panel may outlive the session
    HeadlessHost host_;
    const TemporaryDirectory home_; // holds the preferences until the script sets another file
    Report report_;
    Ref<TESMARViewController> panel_; // null before `create` and after `release`
    bool hasCreatedPanel_ = false;
    Ref<TESMARCaptionView> captions_; // null before the first `captions`
    bool fingerIsDown_ = false;
    std::vector<PixelRect> repainted_; // since the last `damage` query
};

} // namespace tesmar::drive
