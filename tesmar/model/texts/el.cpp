// Greek.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_el{
    // Shown.
    .closedCaptions = "Υπότιτλοι",
    .reset = "Επαναφορά",
    .textColorTitle = "ΧΡΩΜΑ ΚΕΙΜΕΝΟΥ",
    .backgroundColorTitle = "ΧΡΩΜΑ ΦΟΝΤΟΥ",
    .textOpacityTitle = "ΑΔΙΑΦΑΝΕΙΑ",
    .backgroundOpacityTitle = "ΑΔΙΑΦΑΝΕΙΑ",
    .fontTitle = "ΓΡΑΜΜΑΤΟΣΕΙΡΑ",
    .sizeTitle = "ΜΕΓΕΘΟΣ",
    .defaultFont = "Προεπιλογή",
    // Spoken: names.
    .panel = "Ρυθμίσεις υποτίτλων",
    .captionsSwitch = "Υπότιτλοι",
    .textColor = "Χρώμα κειμένου",
    .textOpacity = "Αδιαφάνεια κειμένου",
    .backgroundColor = "Χρώμα φόντου",
    .backgroundOpacity = "Αδιαφάνεια φόντου",
    .font = "Γραμματοσειρά",
    .fontSize = "Μέγεθος γραμματοσειράς",
    .previousFont = "Προηγούμενη γραμματοσειρά",
    .nextFont = "Επόμενη γραμματοσειρά",
    // Spoken: colours.
    .magenta = "ματζέντα",
    .cyan = "κυανό",
    .white = "λευκό",
    .black = "μαύρο",
    .yellow = "κίτρινο",
    .red = "κόκκινο",
    .blue = "μπλε",
    .green = "πράσινο",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} από {m}",
    .percent = "{n} τοις εκατό",
    .points = "{n} στιγμές",
    .selected = "επιλεγμένο",
    .resetDone = "Έγινε επαναφορά του προεπιλεγμένου στυλ",
    .increase = "αύξηση",
    .decrease = "μείωση",
    .on = "ενεργό",
    .off = "ανενεργό",
    .switchRole = "διακόπτης",
    .buttonRole = "κουμπί",
    .headingRole = "επικεφαλίδα",
};

} // namespace tesmar
