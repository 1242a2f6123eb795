#include "SettingsPreferences.h"

#include "FileURL.h"

#include <QSettings>
#include <QStandardPaths>

namespace {

constexpr int finishLimitMilliseconds = 2000;

QString defaultFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Mosa/Mosa.conf");
}

/// A path with bytes that are no UTF-8 holds lone surrogates, which a text in the file would lose.
QVariant stored(const QString &value) {
    return value.isValidUtf16() ? QVariant(value) : QVariant(FileURL::encode(value));
}

QString restored(const QVariant &value) {
    return value.typeId() == QMetaType::QByteArray ? FileURL::decode(value.toByteArray()) : value.toString();
}

} // namespace

SettingsPreferences::SettingsPreferences() : SettingsPreferences(defaultFile()) {}

SettingsPreferences::SettingsPreferences(const QString &file)
    : m_file(file), m_writer(std::make_unique<QThreadPool>()) {
    m_writer->setMaxThreadCount(1);
    const QSettings settings(m_file, QSettings::IniFormat);
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys) {
        m_values.insert(key, restored(settings.value(key)));
    }
}

SettingsPreferences::~SettingsPreferences() {
    if (!m_writer->waitForDone(finishLimitMilliseconds)) {
        // The file system hangs; the pool's destructor would hang with it.
        static_cast<void>(m_writer.release()); // NOLINT(bugprone-unused-return-value)
    }
}

std::optional<QString> SettingsPreferences::string(const QString &key) const {
    const auto found = m_values.constFind(key);
    return found == m_values.cend() ? std::nullopt : std::optional(*found);
}

void SettingsPreferences::setString(const QString &key, const QString &value) {
    m_values.insert(key, value);
    m_writer->start([file = m_file, key, value] {
        QSettings settings(file, QSettings::IniFormat);
        settings.setValue(key, stored(value));
    });
}
