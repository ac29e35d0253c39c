// A copy of a host's table of texts, with the characters.
#pragma once

#include "tesmar/model/TESMARTexts.h"

#include <string>

namespace tesmar {

class OwnTexts {
  public:
    explicit OwnTexts(const TESMARTexts& texts);
    OwnTexts(const OwnTexts&) = delete;
    OwnTexts& operator=(const OwnTexts&) = delete;

    const TESMARTexts& texts() const { return texts_; }

  private:
    std::string characters_;
    TESMARTexts texts_;
};

} // namespace tesmar
