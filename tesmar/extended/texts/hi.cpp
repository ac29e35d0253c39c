// Hindi.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_hi{
    // Shown.
    .presetsTitle = "शैली",
    .edgeTitle = "टेक्स्ट का किनारा",
    .windowColorTitle = "विंडो का रंग",
    .windowOpacityTitle = "अपारदर्शिता",
    .undo = "वापस लें",
    .customPreset = "कस्टम",
    .defaultPreset = "डिफ़ॉल्ट",
    .whiteOnBlack = "काले पर सफ़ेद",
    .blackOnWhite = "सफ़ेद पर काला",
    .yellowOnBlack = "काले पर पीला",
    .yellowOnBlue = "नीले पर पीला",
    .largeText = "बड़ा टेक्स्ट",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "अनौपचारिक",
    .cursive = "घसीट",
    .smallCapitals = "छोटे कैपिटल",
    .invisibleText = "यह टेक्स्ट अदृश्य है",
    .weakContrast = "कुछ चित्रों पर पढ़ना कठिन",
    .tinyText = "यह टेक्स्ट बहुत छोटा है",
    .mend = "ठीक करें",
    // Spoken.
    .presets = "शैली",
    .edge = "टेक्स्ट का किनारा",
    .windowColor = "विंडो का रंग",
    .windowOpacity = "विंडो की अपारदर्शिता",
    .edgeNone = "कोई नहीं",
    .edgeRaised = "उभरा",
    .edgeDepressed = "दबा",
    .edgeUniform = "रूपरेखा",
    .edgeDropShadow = "छाया",
    .undone = "पिछली शैली वापस आ गई",
};

} // namespace tesmar
