// Korean.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_ko{
    // Shown.
    .closedCaptions = "자막",
    .reset = "초기화",
    .textColorTitle = "글자 색상",
    .backgroundColorTitle = "배경 색상",
    .textOpacityTitle = "불투명도",
    .backgroundOpacityTitle = "불투명도",
    .fontTitle = "글꼴",
    .sizeTitle = "크기",
    .defaultFont = "기본값",
    // Spoken: names.
    .panel = "자막 설정",
    .captionsSwitch = "자막",
    .textColor = "글자 색상",
    .textOpacity = "글자 불투명도",
    .backgroundColor = "배경 색상",
    .backgroundOpacity = "배경 불투명도",
    .font = "글꼴",
    .fontSize = "글꼴 크기",
    .previousFont = "이전 글꼴",
    .nextFont = "다음 글꼴",
    // Spoken: colours.
    .magenta = "자홍색",
    .cyan = "청록색",
    .white = "흰색",
    .black = "검은색",
    .yellow = "노란색",
    .red = "빨간색",
    .blue = "파란색",
    .green = "초록색",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{m}개 중 {n}번째",
    .percent = "{n}퍼센트",
    .points = "{n}포인트",
    .selected = "선택됨",
    .resetDone = "기본 스타일로 재설정됨",
    .increase = "늘리기",
    .decrease = "줄이기",
    .on = "켬",
    .off = "끔",
    .switchRole = "스위치",
    .buttonRole = "버튼",
    .headingRole = "제목",
};

} // namespace tesmar
