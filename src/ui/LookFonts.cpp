#include "LookFonts.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>

QString LookFonts::general() {
    const QString inter = QStringLiteral("Inter");
    const QString desktop = QFontInfo(QGuiApplication::font()).family();
    const bool fallback = desktop.startsWith(QStringLiteral("DejaVu"));
    return fallback && QFontDatabase::hasFamily(inter) ? inter : desktop;
}

QString LookFonts::monospaced() {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}
