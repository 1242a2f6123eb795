#pragma once

#include <QKeyEvent>
#include <QString>

/// One key press as the key map reads it: which key it is, whatever the keyboard layout, and what it types.
struct KeyPress {
    enum class Key { other, leftArrow, rightArrow, space, escape };

    Key key = Key::other;
    /// What the key types without modifiers; the same place of a Latin keyboard where the layout has no Latin
    /// letters, as far as the program has a use for the key. Empty for keys that type nothing.
    QString characters;
    bool command = false;

    static KeyPress fromEvent(const QKeyEvent &event);
};
