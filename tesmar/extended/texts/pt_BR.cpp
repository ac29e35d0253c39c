// Brazilian Portuguese.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_pt_BR{
    // Shown.
    .presetsTitle = "ESTILO",
    .edgeTitle = "BORDA DO TEXTO",
    .windowColorTitle = "COR DA JANELA",
    .windowOpacityTitle = "OPACIDADE",
    .undo = "Desfazer",
    .customPreset = "Personalizado",
    .defaultPreset = "Padrão",
    .whiteOnBlack = "Branco no preto",
    .blackOnWhite = "Preto no branco",
    .yellowOnBlack = "Amarelo no preto",
    .yellowOnBlue = "Amarelo no azul",
    .largeText = "Texto grande",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "Casual",
    .cursive = "Cursiva",
    .smallCapitals = "Versaletes",
    .invisibleText = "Este texto está invisível",
    .weakContrast = "Difícil de ler em algumas imagens",
    .tinyText = "Este texto está muito pequeno",
    .mend = "Corrigir",
    // Spoken.
    .presets = "Estilo",
    .edge = "Borda do texto",
    .windowColor = "Cor da janela",
    .windowOpacity = "Opacidade da janela",
    .edgeNone = "nenhuma",
    .edgeRaised = "em relevo",
    .edgeDepressed = "rebaixada",
    .edgeUniform = "contorno",
    .edgeDropShadow = "sombra",
    .undone = "O estilo anterior voltou",
};

} // namespace tesmar
