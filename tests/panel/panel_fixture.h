// The panel over a headless window, with preferences of its own.
#pragma once

#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tesmar/tesmar.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace tesmar {

class PanelTest : public testing::Test {
  protected:
    PanelTest() {
        setDiagnosticHandler([](std::string_view m) { ADD_FAILURE() << "diagnostic: " << m; });
        NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.tests"));
        std::filesystem::create_directories(directory);
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(directory / "preferences.plist");
    }
    ~PanelTest() override {
        setDiagnosticHandler({});
        std::filesystem::remove_all(directory);
    }

    static void tap(HeadlessHost& host, const char* identifier) {
        UIView* const view = host.window()->viewWithIdentifier(identifier);
        ASSERT_NE(view, nullptr) << identifier;
        host.tap(view->convertRectTo(view->bounds(), nullptr).center());
    }

    const std::filesystem::path directory =
        std::filesystem::temp_directory_path() / ("tesmar-panel-" + std::to_string(getpid()));
};

} // namespace tesmar
