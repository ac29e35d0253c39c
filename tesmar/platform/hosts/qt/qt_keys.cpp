#include "tesmar/platform/hosts/qt/internal/qt_keys.h"

namespace tesmar {

std::optional<UIKey> meaningOf(const QKeyEvent& event) {
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return std::nullopt;
    switch (event.key()) {
    case Qt::Key_Up:
        return UIKey::up;
    case Qt::Key_Down:
        return UIKey::down;
    case Qt::Key_Left:
        return UIKey::left;
    case Qt::Key_Right:
        return UIKey::right;
    case Qt::Key_Tab:
        return UIKey::next;
    case Qt::Key_Backtab:
        return UIKey::previous;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Select:
    case Qt::Key_Space:
        return UIKey::select;
    case Qt::Key_Escape:
    case Qt::Key_Back:
        return UIKey::back;
    case Qt::Key_Plus:
    case Qt::Key_Equal: // plus with Shift, on many keyboards
        return UIKey::increment;
    case Qt::Key_Minus:
        return UIKey::decrement;
    case Qt::Key_Home:
        return UIKey::first;
    case Qt::Key_End:
        return UIKey::last;
    default:
        return std::nullopt;
    }
}

} // namespace tesmar
