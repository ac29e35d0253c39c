// Spanish.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_es{
    // Shown.
    .closedCaptions = "Subtítulos",
    .reset = "Restablecer",
    .textColorTitle = "COLOR DEL TEXTO",
    .backgroundColorTitle = "COLOR DE FONDO",
    .textOpacityTitle = "OPACIDAD",
    .backgroundOpacityTitle = "OPACIDAD",
    .fontTitle = "FUENTE",
    .sizeTitle = "TAMAÑO",
    .defaultFont = "Predeterminada",
    // Spoken: names.
    .panel = "Ajustes de subtítulos",
    .captionsSwitch = "Subtítulos",
    .textColor = "Color del texto",
    .textOpacity = "Opacidad del texto",
    .backgroundColor = "Color de fondo",
    .backgroundOpacity = "Opacidad del fondo",
    .font = "Fuente",
    .fontSize = "Tamaño de fuente",
    .previousFont = "Fuente anterior",
    .nextFont = "Fuente siguiente",
    // Spoken: colours.
    .magenta = "magenta",
    .cyan = "cian",
    .white = "blanco",
    .black = "negro",
    .yellow = "amarillo",
    .red = "rojo",
    .blue = "azul",
    .green = "verde",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} de {m}",
    .percent = "{n} por ciento",
    .points = "{n} puntos",
    .selected = "seleccionado",
    .resetDone = "Estilo predeterminado restablecido",
    .increase = "aumentar",
    .decrease = "reducir",
    .on = "activado",
    .off = "desactivado",
    .switchRole = "interruptor",
    .buttonRole = "botón",
    .headingRole = "encabezado",
};

} // namespace tesmar
