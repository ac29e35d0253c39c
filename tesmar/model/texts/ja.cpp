// Japanese.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_ja{
    // Shown.
    .closedCaptions = "字幕",
    .reset = "リセット",
    .textColorTitle = "文字の色",
    .backgroundColorTitle = "背景の色",
    .textOpacityTitle = "不透明度",
    .backgroundOpacityTitle = "不透明度",
    .fontTitle = "フォント",
    .sizeTitle = "サイズ",
    .defaultFont = "標準",
    // Spoken: names.
    .panel = "字幕の設定",
    .captionsSwitch = "字幕",
    .textColor = "文字の色",
    .textOpacity = "文字の不透明度",
    .backgroundColor = "背景の色",
    .backgroundOpacity = "背景の不透明度",
    .font = "フォント",
    .fontSize = "フォントサイズ",
    .previousFont = "前のフォント",
    .nextFont = "次のフォント",
    // Spoken: colours.
    .magenta = "マゼンタ",
    .cyan = "シアン",
    .white = "白",
    .black = "黒",
    .yellow = "黄",
    .red = "赤",
    .blue = "青",
    .green = "緑",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{m}個中{n}番目",
    .percent = "{n}パーセント",
    .points = "{n}ポイント",
    .selected = "選択中",
    .resetDone = "デフォルトのスタイルに戻しました",
    .increase = "上げる",
    .decrease = "下げる",
    .on = "オン",
    .off = "オフ",
    .switchRole = "スイッチ",
    .buttonRole = "ボタン",
    .headingRole = "見出し",
};

} // namespace tesmar
