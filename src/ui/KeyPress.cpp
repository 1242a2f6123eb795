#include "KeyPress.h"

#include <QChar>

#include <algorithm>
#include <utility>

namespace {

/// Hardware codes of an X keyboard, which Wayland shares: the kernel's code + 8.
constexpr std::pair<quint32, char16_t> latinKeys[] = {{24, u'q'}, {32, u'o'}, {34, u'['}, {41, u'f'}};

bool isNonLatinLetter(int key) {
    if (key <= 0 || key > 0xFFFF) {
        return false;
    }
    const QChar character{char16_t(key)};
    return character.isLetter() && character.script() != QChar::Script_Latin;
}

QString latinAt(quint32 scanCode) {
    const auto found = std::ranges::find(latinKeys, scanCode, &std::pair<quint32, char16_t>::first);
    return found == std::end(latinKeys) ? QString() : QString(QChar(found->second));
}

QString charactersOf(const QKeyEvent &event) {
    const int key = event.key();
    if (isNonLatinLetter(key)) {
        return latinAt(event.nativeScanCode());
    }
    // Above lie the keys that type nothing. Letters come as capitals, whether or not shift is held.
    if (key <= 0 || key >= Qt::Key_Escape) {
        return {};
    }
    return QString(QChar(char16_t(key))).toLower();
}

} // namespace

KeyPress KeyPress::fromEvent(const QKeyEvent &event) {
    KeyPress press;
    press.command = event.modifiers().testFlag(Qt::ControlModifier);
    press.characters = charactersOf(event);
    switch (event.key()) {
    case Qt::Key_Left:
        press.key = Key::leftArrow;
        break;
    case Qt::Key_Right:
        press.key = Key::rightArrow;
        break;
    case Qt::Key_Space:
        press.key = Key::space;
        break;
    case Qt::Key_Escape:
        press.key = Key::escape;
        break;
    default:
        break;
    }
    return press;
}
