#pragma once

#include <QString>
#include <QUrl>

/// The program's fixed names and addresses. The files in packaging/ carry the same ones.
namespace ApplicationIdentity {

inline const QString applicationId = QStringLiteral("io.github.mosa_browser.Mosa");
inline const QString objectPath = QStringLiteral("/io/github/mosa_browser/Mosa");
/// As the system's package manager knows it.
inline const QString packageName = QStringLiteral("mosa");

inline QUrl helpPage() {
    return QUrl(QStringLiteral("https://mosa-browser.github.io/mosa/help"), QUrl::StrictMode);
}

inline QUrl feedbackMail() {
    return QUrl(QStringLiteral("mailto:feedback@mosa-browser.github.io?subject=Mosa%20Feedback"),
                QUrl::StrictMode);
}

} // namespace ApplicationIdentity
