#pragma once

#include "Preferences.h"

#include <QHash>
#include <QThreadPool>

#include <memory>

/// Preferences in an INI file. Read once, when made; each write goes to the file on the object's own thread,
/// in order, and leaves alone what another running program wrote there. The end of the object waits for
/// pending writes, but not for ever. A failed write is ignored.
class SettingsPreferences : public Preferences {
public:
    /// In the user's configuration directory.
    SettingsPreferences();
    explicit SettingsPreferences(const QString &file);
    ~SettingsPreferences() override;
    SettingsPreferences(const SettingsPreferences &) = delete;
    SettingsPreferences &operator=(const SettingsPreferences &) = delete;

    std::optional<QString> string(const QString &key) const override;
    void setString(const QString &key, const QString &value) override;

private:
    QString m_file;
    QHash<QString, QString> m_values;
    std::unique_ptr<QThreadPool> m_writer;
};
