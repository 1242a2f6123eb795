#pragma once

#include <QList>
#include <QRect>
#include <QString>

#include <optional>

/// Where a window was when it was last seen, and how to bring it back. Sizes in device-independent pixels.
struct WindowFrame {
    /// A screen as the window sees it: its name at the desktop and the part that panels leave free.
    struct Screen {
        QString name;
        QRect available;
        friend bool operator==(const Screen &, const Screen &) = default;
    };

    /// In the desktop's coordinates, never maximised or full screen.
    QRect frame;
    Screen screen;
    bool maximised = false;

    /// As one line of preferences.
    QString text() const;
    /// None for a text that text() did not write, or with an empty frame.
    static std::optional<WindowFrame> fromText(const QString &text);

    /// The frame for the screens of today, the first one the user's main one: it follows its screen to a new
    /// place, is no larger than the screen and no smaller than minimum, and stands wholly on a screen unless
    /// its top strip can be reached anyway.
    QRect placed(const QList<Screen> &screens, QSize minimum) const;

    /// A window of that size in the middle of the screen, or as large as the screen allows.
    static QRect centred(QSize size, const QRect &available, QSize minimum);

    friend bool operator==(const WindowFrame &, const WindowFrame &) = default;
};
