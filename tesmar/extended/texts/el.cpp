// Greek.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_el{
    // Shown.
    .presetsTitle = "ΣΤΥΛ",
    .edgeTitle = "ΠΕΡΙΓΡΑΜΜΑ",
    .windowColorTitle = "ΧΡΩΜΑ ΠΛΑΙΣΙΟΥ",
    .windowOpacityTitle = "ΑΔΙΑΦΑΝΕΙΑ",
    .undo = "Αναίρεση",
    .customPreset = "Δικό μου",
    .defaultPreset = "Προεπιλογή",
    .whiteOnBlack = "Λευκό σε μαύρο",
    .blackOnWhite = "Μαύρο σε λευκό",
    .yellowOnBlack = "Κίτρινο σε μαύρο",
    .yellowOnBlue = "Κίτρινο σε μπλε",
    .largeText = "Μεγάλο κείμενο",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "Ανεπίσημη",
    .cursive = "Χειρόγραφη",
    .smallCapitals = "Μικρά κεφαλαία",
    .invisibleText = "Το κείμενο είναι αόρατο",
    .weakContrast = "Δυσανάγνωστο σε κάποιες εικόνες",
    .tinyText = "Το κείμενο είναι πολύ μικρό",
    .mend = "Διόρθωση",
    // Spoken.
    .presets = "Στυλ",
    .edge = "Περίγραμμα κειμένου",
    .windowColor = "Χρώμα πλαισίου",
    .windowOpacity = "Αδιαφάνεια πλαισίου",
    .edgeNone = "κανένα",
    .edgeRaised = "ανάγλυφο",
    .edgeDepressed = "βυθισμένο",
    .edgeUniform = "περίγραμμα",
    .edgeDropShadow = "σκιά",
    .undone = "Το προηγούμενο στυλ επανήλθε",
};

} // namespace tesmar
