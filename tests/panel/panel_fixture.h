// The panel in a headless window, with preferences of its own. An unexpected diagnostic is a
// failure.
#pragma once

#include "host_parts.h"
#include "tesmar/platform/hosts/headless/HeadlessHost.h"

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
        ASSERT_TRUE(host.window()->viewWithIdentifier(identifier)) << identifier;
        host.tap(centerOf(*host.window(), identifier));
    }

    const std::filesystem::path directory =
        std::filesystem::temp_directory_path() / ("tesmar-panel-" + std::to_string(getpid()));
};

} // namespace tesmar
