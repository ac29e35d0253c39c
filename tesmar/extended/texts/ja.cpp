// Japanese.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_ja{
    // Shown.
    .presetsTitle = "スタイル",
    .edgeTitle = "文字の縁",
    .windowColorTitle = "ウィンドウの色",
    .windowOpacityTitle = "不透明度",
    .undo = "元に戻す",
    .customPreset = "カスタム",
    .defaultPreset = "デフォルト",
    .whiteOnBlack = "黒地に白",
    .blackOnWhite = "白地に黒",
    .yellowOnBlack = "黒地に黄",
    .yellowOnBlue = "青地に黄",
    .largeText = "大きい文字",
    .monospacedSerif = "等幅セリフ",
    .proportionalSerif = "セリフ",
    .monospacedSans = "等幅サンセリフ",
    .proportionalSans = "サンセリフ",
    .casual = "カジュアル",
    .cursive = "筆記体",
    .smallCapitals = "スモールキャップ",
    .invisibleText = "文字が見えません",
    .weakContrast = "映像によっては読みにくい色です",
    .tinyText = "文字がとても小さいです",
    .mend = "修正",
    // Spoken.
    .presets = "スタイル",
    .edge = "文字の縁",
    .windowColor = "ウィンドウの色",
    .windowOpacity = "ウィンドウの不透明度",
    .edgeNone = "なし",
    .edgeRaised = "浮き出し",
    .edgeDepressed = "くぼみ",
    .edgeUniform = "輪郭",
    .edgeDropShadow = "影",
    .undone = "前のスタイルに戻しました",
};

} // namespace tesmar
