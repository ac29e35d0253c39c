// Chinese in simplified characters.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_zh_Hans{
    // Shown.
    .presetsTitle = "样式",
    .edgeTitle = "文字边缘",
    .windowColorTitle = "窗口颜色",
    .windowOpacityTitle = "不透明度",
    .undo = "撤销",
    .customPreset = "自定义",
    .defaultPreset = "默认",
    .whiteOnBlack = "黑底白字",
    .blackOnWhite = "白底黑字",
    .yellowOnBlack = "黑底黄字",
    .yellowOnBlue = "蓝底黄字",
    .largeText = "大字",
    .monospacedSerif = "等宽衬线",
    .proportionalSerif = "衬线",
    .monospacedSans = "等宽无衬线",
    .proportionalSans = "无衬线",
    .casual = "休闲",
    .cursive = "手写",
    .smallCapitals = "小型大写",
    .invisibleText = "文字不可见",
    .weakContrast = "在部分画面上难以看清",
    .tinyText = "文字非常小",
    .mend = "修正",
    // Spoken.
    .presets = "样式",
    .edge = "文字边缘",
    .windowColor = "窗口颜色",
    .windowOpacity = "窗口不透明度",
    .edgeNone = "无",
    .edgeRaised = "凸起",
    .edgeDepressed = "凹陷",
    .edgeUniform = "描边",
    .edgeDropShadow = "阴影",
    .undone = "已恢复之前的样式",
};

} // namespace tesmar
