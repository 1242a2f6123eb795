#include "KeyPress.h"

#include <QChar>
#include <private/qkeymapper_p.h>

#include <algorithm>
#include <utility>

namespace {

/// Hardware codes of an X keyboard, which Wayland shares: the kernel's code + 8.
constexpr std::pair<quint32, char16_t> latinKeys[] = {{24, u'q'}, {32, u'o'}, {34, u'['}, {41, u'f'}};
constexpr std::pair<quint32, quint32> letterRows[] = {{24, 33}, {38, 46}, {52, 58}};

bool isLetter(int key, bool latin) {
    if (key <= 0 || key > 0xFFFF) {
        return false;
    }
    const QChar character{char16_t(key)};
    return character.isLetter() && (character.script() == QChar::Script_Latin) == latin;
}

QString latinAt(quint32 scanCode) {
    const auto found = std::ranges::find(latinKeys, scanCode, &std::pair<quint32, char16_t>::first);
    return found == std::end(latinKeys) ? QString() : QString(QChar(found->second));
}

/// What the key of that code types by itself; 0 for nothing or where the window system does not say.
int keyAt(quint32 scanCode) {
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, scanCode, 0, 0);
    return QKeyMapper::possibleKeys(&press).value(0);
}

bool layoutHasLatinLetters() {
    for (const auto &[first, last] : letterRows) {
        for (quint32 code = first; code <= last; ++code) {
            if (isLetter(keyAt(code), true)) {
                return true;
            }
        }
    }
    return false;
}

/// Whether the press, of whatever it types, is one of a layout without Latin letters. Greek and Hebrew have
/// punctuation where some of the letters are.
bool isForeign(const QKeyEvent &event) {
    if (isLetter(event.key(), true)) {
        return false;
    }
    const bool isKnown = keyAt(event.nativeScanCode()) != 0;
    return isLetter(event.key(), false) || (isKnown && !layoutHasLatinLetters());
}

QString charactersOf(const QKeyEvent &event) {
    const int key = event.key();
    // Above lie the keys that type nothing.
    if (key <= 0 || key >= Qt::Key_Escape) {
        return {};
    }
    QString latin = latinAt(event.nativeScanCode());
    if (!latin.isEmpty() && isForeign(event)) {
        return latin;
    }
    // Letters come as capitals, whether or not shift is held.
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
