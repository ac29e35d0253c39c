// The panel in a headless window, with preferences of its own. An unexpected diagnostic is a
// failure.
#pragma once

#include "host_parts.h"
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tools/drive/TemporaryDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace tesmar {

class PanelTest : public testing::Test {
  protected:
    PanelTest() {
        setDiagnosticHandler([](std::string_view m) { ADD_FAILURE() << "diagnostic: " << m; });
        NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.tests"));
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(directory / "preferences.plist");
    }
    ~PanelTest() override { setDiagnosticHandler({}); }

    const drive::TemporaryDirectory temporary;
    const std::filesystem::path directory = temporary.path();
};

} // namespace tesmar
