// The process of a player: an empty directory with its preferences, in the locale that the video
// engine requires.
#pragma once

#include "options.h"

#include "tesmar/tesmar.h"

#include <gtest/gtest.h>

#include <clocale>
#include <filesystem>

namespace tesmar {

class PlayerFixture : public testing::Test {
  protected:
    PlayerFixture() {
        std::setlocale(LC_NUMERIC, "C");
        NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.player-test"));
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_);
        options_.size = {568, 320};
        options_.pictures = directory_ + "/pictures";
        options_.preferences = directory_ + "/preferences.plist";
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(options_.preferences);
    }
    ~PlayerFixture() override { std::filesystem::remove_all(directory_); }

    const std::string directory_ = testing::TempDir() + "player-" +
                                   testing::UnitTest::GetInstance()->current_test_info()->name();
    Options options_;
};

} // namespace tesmar
