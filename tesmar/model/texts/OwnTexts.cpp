#include "tesmar/model/texts/internal/OwnTexts.h"

namespace tesmar {
namespace {

using T = TESMARTexts;
constexpr std::string_view T::*kTexts[]{
    &T::closedCaptions,
    &T::reset,
    &T::textColorTitle,
    &T::backgroundColorTitle,
    &T::textOpacityTitle,
    &T::backgroundOpacityTitle,
    &T::fontTitle,
    &T::sizeTitle,
    &T::defaultFont,
    &T::panel,
    &T::captionsSwitch,
    &T::textColor,
    &T::textOpacity,
    &T::backgroundColor,
    &T::backgroundOpacity,
    &T::font,
    &T::fontSize,
    &T::previousFont,
    &T::nextFont,
    &T::magenta,
    &T::cyan,
    &T::white,
    &T::black,
    &T::yellow,
    &T::red,
    &T::blue,
    &T::green,
    &T::position,
    &T::percent,
    &T::points,
    &T::selected,
    &T::resetDone,
    &T::increase,
    &T::decrease,
    &T::on,
    &T::off,
    &T::switchRole,
    &T::buttonRole,
    &T::headingRole,
};
struct AsManyTexts {
    ReadingDirection direction;
    std::string_view texts[std::size(kTexts)];
};
static_assert(sizeof(TESMARTexts) == sizeof(AsManyTexts), "a text is missing above");

} // namespace

OwnTexts::OwnTexts(const TESMARTexts& texts) : texts_(texts) {
    for (const auto text : kTexts)
        characters_ += texts.*text;
    std::string_view rest = characters_;
    for (const auto text : kTexts) {
        texts_.*text = rest.substr(0, (texts.*text).size());
        rest.remove_prefix((texts.*text).size());
    }
}

} // namespace tesmar
