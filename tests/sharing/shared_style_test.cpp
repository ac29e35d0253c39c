// One style in several panels, threads and processes.
#include "tests/panel/panel_fixture.h"

#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>

namespace tesmar {
namespace {

namespace fs = std::filesystem;

Ref<NSDictionary> styleOf(const std::string& mark) {
    return NSDictionary::dictionaryWithEntries({{"mark", NSString::stringWithString(mark)}});
}

std::string markOf(const NSDictionary& style) {
    const auto mark = as<NSString>(style.objectForKey("mark"));
    return mark ? mark->text() : "none";
}

void save(const std::string& mark) {
    TESMARConfig::saveSessionClosedCaptureStyle(styleOf(mark));
}

class SharedStyle : public PanelTest {
  protected:
    ~SharedStyle() override {
        TESMARConfig::setStyleSource({});
        TESMARConfig::setStyleStore({}, {});
    }

    // Records the styles that it is told.
    TESMARStyleListener listener() {
        return TESMARConfig::addStyleListener(
            [this](auto& style) { told += markOf(*style) + " "; });
    }
    std::string told;
};

TEST_F(SharedStyle, TheSourceComesBeforeTheStoredStyle) {
    const auto current = [] { return markOf(*TESMARConfig::sessionOrDefaultClosedCaptureStyle()); };
    auto given = styleOf("account")->mutableCopy();
    TESMARConfig::setStyleSource([&] { return given; });
    const auto first = TESMARConfig::sessionOrDefaultClosedCaptureStyle();
    given->setObject(NSString::stringWithString("later"), "mark");
    EXPECT_EQ(markOf(*first) + current(), "accountlater") << "not a copy";
    save("stored");
    EXPECT_EQ(current(), "later");
    TESMARConfig::setStyleSource([] { return Ref<NSDictionary>(); });
    EXPECT_EQ(current(), "stored");
    TESMARConfig::setStyleSource([&] { // removes itself
        TESMARConfig::setStyleSource({});
        return styleOf(current() + "!");
    });
    EXPECT_EQ(current(), "stored!");
    TESMARConfig::setStyleSource([&]() -> Ref<NSDictionary> {
        if (current() == "stored")
            throw HostError();
        return nullptr;
    });
    EXPECT_THROW(current(), HostError);
    EXPECT_THROW(current(), HostError) << "not asked again";
}

TEST_F(SharedStyle, AStoreOfTheHostsTakesThePlaceOfThePreferences) {
    const auto panel = make<TESMARViewController>();
    Ref<NSDictionary> kept, own;
    const auto shown = [&] { return markOf(*panel->CCStyleAttributes()); };
    const auto present = [&] {
        panel->viewWillAppear(false);
        return shown();
    };
    const auto change = [&](const std::string& mark) {
        panel->setCCStyleAttributes(styleOf(mark)->mutableCopy());
        panel->ccColorChanged();
    };
    save("preferences");
    TESMARConfig::setStyleStore([&] { return kept; }, [&](auto& style) { kept = style; });
    EXPECT_EQ(present(), "none"); // the default
    change("kept");               // saved though the panel does not remember
    panel->CCStyleAttributes()->removeObjectForKey("mark");
    EXPECT_EQ(present() + markOf(*kept), "keptkept") << "not a copy";

    panel->setStyleStore([&] { return own; }, [&](auto& style) { own = style; });
    EXPECT_EQ(present(), "none");
    change("own");
    EXPECT_EQ(present() + markOf(*kept), "ownkept");
    TESMARConfig::setStyleSource([] { return styleOf("account"); });
    EXPECT_EQ(present(), "account");
    TESMARConfig::setStyleSource({});

    panel->setStyleStore([&] { return own; }, [](auto&) { throw HostError(); });
    EXPECT_THROW(change("lost"), HostError);
    EXPECT_EQ(panel->saveFailure(), "exception");
    panel->setStyleStore({}, {});
    EXPECT_EQ(present(), "kept");
    TESMARConfig::setStyleStore( // a store may stand on the preferences
        [] { return TESMARConfig::sessionClosedCaptureStyle(); },
        [](auto& style) { TESMARConfig::saveSessionClosedCaptureStyle(style); });
    EXPECT_EQ(present(), "preferences");
    change("through");
    TESMARConfig::setStyleStore({}, {});
    EXPECT_EQ(present(), "through");
    EXPECT_DEATH(TESMARConfig::setStyleStore([] { return styleOf("one"); }, {}), "is empty");
}

TEST_F(SharedStyle, ListenersAreToldEachChangeOnceOnTheirThread) {
    const auto all = listener();
    TESMARStyleListener once;
    once = TESMARConfig::addStyleListener([&](auto&) {
        once = {};
        told += "once ";
        save("nested"); // the first listener knows it before this one returns
        throw HostError();
    });
    const auto last = listener();
    EXPECT_THROW(save("a"), HostError);
    EXPECT_EQ(TESMARConfig::saveFailure(), "");
    save("nested");
    EXPECT_EQ(std::exchange(told, ""), "a once nested nested ");
    std::jthread([&] {
        const auto own = listener();
        save("thread");
    }).join();
    EXPECT_EQ(std::exchange(told, ""), "thread ");
    TESMARConfig::refresh();
    TESMARConfig::refresh();
    EXPECT_EQ(told, "thread thread ");
}

TEST_F(SharedStyle, PanelsFollowOneAnother) {
    HeadlessHost hosts[2] = {HeadlessHost({640, 360}), HeadlessHost({640, 360})};
    Ref<TESMARViewController> panels[2];
    const auto log = std::make_shared<CallLog>();
    for (const int i : {0, 1}) {
        panels[i] = make<TESMARViewController>();
        panels[i]->setRememberChangedStyle(true);
        panels[i]->setFollowsSharedStyle(true);
        hosts[i].window()->presentViewController(panels[i], false);
    }
    panels[1]->setDelegate(log);
    const auto untouched = panels[1]->CCStyleAttributes();
    hosts[0].tap(centerOf(*hosts[0].window(), "textColorPicker.5"));
    EXPECT_FALSE(untouched->isEqual(panels[0]->CCStyleAttributes().get()));
    EXPECT_TRUE(panels[1]->CCStyleAttributes()->isEqual(panels[0]->CCStyleAttributes().get()));
    EXPECT_EQ(log->calls, "");
    panels[1]->setFollowsSharedStyle(false);
    const auto left = panels[1]->CCStyleAttributes();
    hosts[0].tap(centerOf(*hosts[0].window(), "textColorPicker.2"));
    EXPECT_EQ(panels[1]->CCStyleAttributes(), left);

    // A listener that throws neither hides the change from the delegate nor counts as a failure.
    panels[0]->setDelegate(log);
    const auto bad = TESMARConfig::addStyleListener([](auto&) { throw HostError(); });
    EXPECT_THROW(hosts[0].tap(centerOf(*hosts[0].window(), "textColorPicker.3")), HostError);
    EXPECT_EQ(log->calls + panels[0]->saveFailure(), "style ");
}

// --- The watch ----------------------------------------------------------------------------------

void inAnotherProcess(const std::function<void()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        body();
        std::_Exit(0);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(SharedStyle, ChangesByOtherProcessesAreNoticed) {
    const fs::path folder = directory / "x/y", file = folder / "p.plist";
    NSUserDefaults::standardUserDefaults()->setPreferencesPath(file);
    TESMARStyleWatch watch;
    EXPECT_GT(watch.descriptor(), 2);
    EXPECT_TRUE(::fcntl(watch.descriptor(), F_GETFD) & FD_CLOEXEC);
    const auto subscription = listener();
    const auto afterwards = [&] {
        pollfd one{watch.descriptor(), POLLIN, 0};
        EXPECT_EQ(::poll(&one, 1, 0), 1);
        watch.process();
        watch.process(); // what the first call has caused, such as the ends of old watches
        EXPECT_EQ(::poll(&one, 1, 0), 0) << "it would spin";
        return std::exchange(told, "");
    };
    const auto saveAside = [&](const char* mark) { // to be moved over the file
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(directory / "aside");
        save(mark);
    };
    const struct {
        const char* what;
        std::function<void()> change;
        std::string told;
    } rows[] = {
        {"new directories", [] { save("new"); }, "new "},
        {"a save", [] { save("second"); }, "second "},
        {"the same style", [] { save("second"); }, ""},
        {"a replaced file", [&] { saveAside("moved"), fs::rename(directory / "aside", file); },
         "moved "},
        {"a moved directory", [&] { fs::rename(folder, directory / "x/z"); }, "none "},
        {"and back", [&] { fs::rename(directory / "x/z", folder); }, "moved "},
        {"a deleted directory", [&] { fs::remove_all(directory / "x"); }, "none "},
        {"made again", [] { save("again"); }, "again "},
        {"a link",
         [&] {
             fs::create_directory(directory / "real");
             saveAside("linked"), fs::rename(directory / "aside", directory / "real/p");
             fs::remove(file), fs::create_symlink("../../real/p", file);
         },
         "linked "},
        {"a save through it", [] { save("through"); }, "through "},
    };
    for (const auto& [what, change, expected] : rows) {
        SCOPED_TRACE(what);
        inAnotherProcess(change);
        EXPECT_EQ(afterwards(), expected);
    }
    inAnotherProcess([&] { // overflows the queue, of 16,384 reports if it has its usual length
        for (int i = 0; i < 20'000; ++i)
            std::ofstream(folder / std::to_string(i % 2));
        save("overflow");
    });
    EXPECT_EQ(afterwards(), "overflow ");
}

TEST_F(SharedStyle, AWatchThatTheSystemRefusesSaysWhy) {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none{3, limit.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    TESMARStyleWatch watch;
    ::setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(watch.descriptor(), -1);
    EXPECT_EQ(watch.failure(), "inotify_init1: Too many open files");
    const auto subscription = listener();
    inAnotherProcess([] { save("other"); });
    watch.process();
    EXPECT_EQ(told, "other ");
}

} // namespace
} // namespace tesmar
