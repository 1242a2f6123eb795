#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QString>
#include <QUrl>

/// The program's fixed names and addresses. The files in packaging/ carry the same ones.
namespace ApplicationIdentity {

inline const QString applicationId = QStringLiteral("io.github.mosa_browser.Mosa");
inline const QString objectPath = QStringLiteral("/io/github/mosa_browser/Mosa");
/// As the system's package manager knows it.
inline const QString packageName = QStringLiteral("mosa");

/// The page that is installed with the program: where it lies from the program's own folder on.
inline QUrl helpPage() {
    const QString shared =
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/mosa/help.html");
    return QUrl::fromLocalFile(QDir::cleanPath(shared));
}

/// Where the user's remarks go, with a subject; the address is chosen when the program is built.
inline QUrl feedbackMail() {
    return QUrl(QStringLiteral("mailto:" MOSA_FEEDBACK_ADDRESS "?subject=Mosa%20Feedback"), QUrl::StrictMode);
}

} // namespace ApplicationIdentity
