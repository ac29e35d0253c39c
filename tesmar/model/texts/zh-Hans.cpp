// Chinese in simplified characters.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_zh_Hans{
    // Shown.
    .closedCaptions = "字幕",
    .reset = "重置",
    .textColorTitle = "文字颜色",
    .backgroundColorTitle = "背景颜色",
    .textOpacityTitle = "不透明度",
    .backgroundOpacityTitle = "不透明度",
    .fontTitle = "字体",
    .sizeTitle = "大小",
    .defaultFont = "默认",
    // Spoken: names.
    .panel = "字幕设置",
    .captionsSwitch = "字幕",
    .textColor = "文字颜色",
    .textOpacity = "文字不透明度",
    .backgroundColor = "背景颜色",
    .backgroundOpacity = "背景不透明度",
    .font = "字体",
    .fontSize = "字体大小",
    .previousFont = "上一个字体",
    .nextFont = "下一个字体",
    // Spoken: colours.
    .magenta = "品红色",
    .cyan = "青色",
    .white = "白色",
    .black = "黑色",
    .yellow = "黄色",
    .red = "红色",
    .blue = "蓝色",
    .green = "绿色",
    // Spoken: values, states, actions and kinds of controls.
    .position = "第 {n} 项，共 {m} 项",
    .percent = "百分之 {n}",
    .points = "{n} 磅",
    .selected = "已选中",
    .resetDone = "已恢复默认样式",
    .increase = "增大",
    .decrease = "减小",
    .on = "开",
    .off = "关",
    .switchRole = "开关",
    .buttonRole = "按钮",
    .headingRole = "标题",
};

} // namespace tesmar
