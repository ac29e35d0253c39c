// Brazilian Portuguese.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_pt_BR{
    // Shown.
    .closedCaptions = "Legendas",
    .reset = "Redefinir",
    .textColorTitle = "COR DO TEXTO",
    .backgroundColorTitle = "COR DO FUNDO",
    .textOpacityTitle = "OPACIDADE",
    .backgroundOpacityTitle = "OPACIDADE",
    .fontTitle = "FONTE",
    .sizeTitle = "TAMANHO",
    .defaultFont = "Padrão",
    // Spoken: names.
    .panel = "Configurações de legendas",
    .captionsSwitch = "Legendas",
    .textColor = "Cor do texto",
    .textOpacity = "Opacidade do texto",
    .backgroundColor = "Cor do fundo",
    .backgroundOpacity = "Opacidade do fundo",
    .font = "Fonte",
    .fontSize = "Tamanho da fonte",
    .previousFont = "Fonte anterior",
    .nextFont = "Próxima fonte",
    // Spoken: colours.
    .magenta = "magenta",
    .cyan = "ciano",
    .white = "branco",
    .black = "preto",
    .yellow = "amarelo",
    .red = "vermelho",
    .blue = "azul",
    .green = "verde",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} de {m}",
    .percent = "{n} por cento",
    .points = "{n} pontos",
    .selected = "selecionado",
    .resetDone = "Estilo padrão restaurado",
    .increase = "aumentar",
    .decrease = "diminuir",
    .on = "ativado",
    .off = "desativado",
    .switchRole = "interruptor",
    .buttonRole = "botão",
    .headingRole = "título",
};

} // namespace tesmar
