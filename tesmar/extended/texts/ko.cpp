// Korean.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_ko{
    // Shown.
    .presetsTitle = "스타일",
    .edgeTitle = "글자 테두리",
    .windowColorTitle = "창 색상",
    .windowOpacityTitle = "불투명도",
    .undo = "실행 취소",
    .customPreset = "사용자 설정",
    .defaultPreset = "기본값",
    .whiteOnBlack = "검은색 위 흰색",
    .blackOnWhite = "흰색 위 검은색",
    .yellowOnBlack = "검은색 위 노란색",
    .yellowOnBlue = "파란색 위 노란색",
    .largeText = "큰 글자",
    .monospacedSerif = "고정폭 세리프",
    .proportionalSerif = "세리프",
    .monospacedSans = "고정폭 산세리프",
    .proportionalSans = "산세리프",
    .casual = "캐주얼",
    .cursive = "필기체",
    .smallCapitals = "작은 대문자",
    .invisibleText = "글자가 보이지 않습니다",
    .weakContrast = "일부 화면에서 읽기 어렵습니다",
    .tinyText = "글자가 아주 작습니다",
    .mend = "고치기",
    // Spoken.
    .presets = "스타일",
    .edge = "글자 테두리",
    .windowColor = "창 색상",
    .windowOpacity = "창 불투명도",
    .edgeNone = "없음",
    .edgeRaised = "볼록",
    .edgeDepressed = "오목",
    .edgeUniform = "윤곽",
    .edgeDropShadow = "그림자",
    .undone = "이전 스타일로 돌아왔습니다",
};

} // namespace tesmar
