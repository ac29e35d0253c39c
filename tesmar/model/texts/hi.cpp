// Hindi.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_hi{
    // Shown.
    .closedCaptions = "सबटाइटल",
    .reset = "रीसेट करें",
    .textColorTitle = "टेक्स्ट का रंग",
    .backgroundColorTitle = "बैकग्राउंड का रंग",
    .textOpacityTitle = "अपारदर्शिता",
    .backgroundOpacityTitle = "अपारदर्शिता",
    .fontTitle = "फ़ॉन्ट",
    .sizeTitle = "आकार",
    .defaultFont = "डिफ़ॉल्ट",
    // Spoken: names.
    .panel = "सबटाइटल सेटिंग",
    .captionsSwitch = "सबटाइटल",
    .textColor = "टेक्स्ट का रंग",
    .textOpacity = "टेक्स्ट की अपारदर्शिता",
    .backgroundColor = "बैकग्राउंड का रंग",
    .backgroundOpacity = "बैकग्राउंड की अपारदर्शिता",
    .font = "फ़ॉन्ट",
    .fontSize = "फ़ॉन्ट का आकार",
    .previousFont = "पिछला फ़ॉन्ट",
    .nextFont = "अगला फ़ॉन्ट",
    // Spoken: colours.
    .magenta = "मैजेंटा",
    .cyan = "सियान",
    .white = "सफ़ेद",
    .black = "काला",
    .yellow = "पीला",
    .red = "लाल",
    .blue = "नीला",
    .green = "हरा",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{m} में से {n}",
    .percent = "{n} प्रतिशत",
    .points = "{n} पॉइंट",
    .selected = "चुना गया",
    .resetDone = "डिफ़ॉल्ट शैली बहाल की गई",
    .increase = "बढ़ाएँ",
    .decrease = "घटाएँ",
    .on = "चालू",
    .off = "बंद",
    .switchRole = "स्विच",
    .buttonRole = "बटन",
    .headingRole = "शीर्षक",
};

} // namespace tesmar
