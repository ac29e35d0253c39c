// Chinese in traditional characters.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_zh_Hant{
    // Shown.
    .closedCaptions = "字幕",
    .reset = "重設",
    .textColorTitle = "文字顏色",
    .backgroundColorTitle = "背景顏色",
    .textOpacityTitle = "不透明度",
    .backgroundOpacityTitle = "不透明度",
    .fontTitle = "字型",
    .sizeTitle = "大小",
    .defaultFont = "預設",
    // Spoken: names.
    .panel = "字幕設定",
    .captionsSwitch = "字幕",
    .textColor = "文字顏色",
    .textOpacity = "文字不透明度",
    .backgroundColor = "背景顏色",
    .backgroundOpacity = "背景不透明度",
    .font = "字型",
    .fontSize = "字型大小",
    .previousFont = "上一個字型",
    .nextFont = "下一個字型",
    // Spoken: colours.
    .magenta = "洋紅色",
    .cyan = "青色",
    .white = "白色",
    .black = "黑色",
    .yellow = "黃色",
    .red = "紅色",
    .blue = "藍色",
    .green = "綠色",
    // Spoken: values, states, actions and kinds of controls.
    .position = "第 {n} 項，共 {m} 項",
    .percent = "百分之 {n}",
    .points = "{n} 點",
    .selected = "已選取",
    .resetDone = "已恢復預設樣式",
    .increase = "增加",
    .decrease = "減少",
    .on = "開",
    .off = "關",
    .switchRole = "開關",
    .buttonRole = "按鈕",
    .headingRole = "標題",
};

} // namespace tesmar
