#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

/// The font families of the look: the desktop's own, unless the desktop has none beyond the last fallback.
class LookFonts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString general READ general CONSTANT)
    Q_PROPERTY(QString monospaced READ monospaced CONSTANT)

public:
    using QObject::QObject;

    static QString general();
    static QString monospaced();
};
