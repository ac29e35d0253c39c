// Spanish.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_es{
    // Shown.
    .presetsTitle = "ESTILO",
    .edgeTitle = "BORDE DEL TEXTO",
    .windowColorTitle = "COLOR DEL RECUADRO",
    .windowOpacityTitle = "OPACIDAD",
    .undo = "Deshacer",
    .customPreset = "Personalizado",
    .defaultPreset = "Predeterminado",
    .whiteOnBlack = "Blanco sobre negro",
    .blackOnWhite = "Negro sobre blanco",
    .yellowOnBlack = "Amarillo sobre negro",
    .yellowOnBlue = "Amarillo sobre azul",
    .largeText = "Texto grande",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "Informal",
    .cursive = "Cursiva",
    .smallCapitals = "Versalitas",
    .invisibleText = "Este texto es invisible",
    .weakContrast = "Difícil de leer en algunas imágenes",
    .tinyText = "Este texto es muy pequeño",
    .mend = "Corregir",
    // Spoken.
    .presets = "Estilo",
    .edge = "Borde del texto",
    .windowColor = "Color del recuadro",
    .windowOpacity = "Opacidad del recuadro",
    .edgeNone = "ninguno",
    .edgeRaised = "en relieve",
    .edgeDepressed = "hundido",
    .edgeUniform = "contorno",
    .edgeDropShadow = "sombra",
    .undone = "Se ha recuperado el estilo anterior",
};

} // namespace tesmar
