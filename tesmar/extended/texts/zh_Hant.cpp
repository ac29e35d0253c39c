// Chinese in traditional characters.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_zh_Hant{
    // Shown.
    .presetsTitle = "樣式",
    .edgeTitle = "文字邊緣",
    .windowColorTitle = "視窗顏色",
    .windowOpacityTitle = "不透明度",
    .undo = "復原",
    .customPreset = "自訂",
    .defaultPreset = "預設",
    .whiteOnBlack = "黑底白字",
    .blackOnWhite = "白底黑字",
    .yellowOnBlack = "黑底黃字",
    .yellowOnBlue = "藍底黃字",
    .largeText = "大字",
    .monospacedSerif = "等寬襯線",
    .proportionalSerif = "襯線",
    .monospacedSans = "等寬無襯線",
    .proportionalSans = "無襯線",
    .casual = "休閒",
    .cursive = "手寫",
    .smallCapitals = "小型大寫",
    .invisibleText = "文字看不見",
    .weakContrast = "在部分畫面上不易閱讀",
    .tinyText = "文字非常小",
    .mend = "修正",
    // Spoken.
    .presets = "樣式",
    .edge = "文字邊緣",
    .windowColor = "視窗顏色",
    .windowOpacity = "視窗不透明度",
    .edgeNone = "無",
    .edgeRaised = "凸起",
    .edgeDepressed = "凹陷",
    .edgeUniform = "外框",
    .edgeDropShadow = "陰影",
    .undone = "已恢復先前的樣式",
};

} // namespace tesmar
