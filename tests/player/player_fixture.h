// The process of a player: an empty directory with its preferences, in the locale that the video
// engine requires.
#pragma once

#include "options.h"

#include "tesmar/tesmar.h"
#include "tools/drive/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <clocale>

namespace tesmar {

class PlayerFixture : public testing::Test {
  protected:
    PlayerFixture() {
        std::setlocale(LC_NUMERIC, "C");
        NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.player-test"));
        options_.size = {568, 320};
        options_.pictures = directory_ + "/pictures";
        options_.preferences = directory_ + "/preferences.plist";
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(options_.preferences);
    }

    const drive::TemporaryDirectory temporary_;
    const std::string directory_ = temporary_.path();
    Options options_;
};

} // namespace tesmar
