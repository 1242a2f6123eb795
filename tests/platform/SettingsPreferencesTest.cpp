#include "SettingsPreferences.h"

#include "FileURL.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class SettingsPreferencesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsTexts_data();
    void keepsTexts();
    void leavesOtherKeysAlone();
    void ignoresAFileThatCannotBeWritten();
};

void SettingsPreferencesTest::keepsTexts_data() {
    QTest::addColumn<QString>("value");

    QTest::newRow("path") << QStringLiteral("/home/me/Pictures, old; \"x\" %20 = \\n");
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("beyond ASCII") << QStringLiteral("/Bilder/Grüße 🦊 日本");
    QTest::newRow("line break") << QStringLiteral("/a\nb\tc");
    QTest::newRow("looks like a typed value") << QStringLiteral("@ByteArray(x)");
    QTest::newRow("not UTF-8") << FileURL::decode("/a/\xE9t\xE9/\xF0\x9F");
}

void SettingsPreferencesTest::keepsTexts() {
    QFETCH(QString, value);
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("sub/Mosa.conf"));
    const QString key = QStringLiteral("MosaLastFolder");
    {
        SettingsPreferences preferences(file);
        QVERIFY(!preferences.string(key));
        preferences.setString(key, QStringLiteral("first"));
        preferences.setString(key, value);
        QCOMPARE(preferences.string(key), value);
    }
    QVERIFY(QFile::exists(file));
    QCOMPARE(SettingsPreferences(file).string(key), value);
}

void SettingsPreferencesTest::leavesOtherKeysAlone() {
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("Mosa.conf"));
    {
        // As two running programs.
        SettingsPreferences one(file);
        SettingsPreferences other(file);
        one.setString(QStringLiteral("a"), QStringLiteral("1"));
        other.setString(QStringLiteral("b"), QStringLiteral("2"));
    }
    const SettingsPreferences both(file);
    QCOMPARE(both.string(QStringLiteral("a")), QStringLiteral("1"));
    QCOMPARE(both.string(QStringLiteral("b")), QStringLiteral("2"));
}

void SettingsPreferencesTest::ignoresAFileThatCannotBeWritten() {
    SettingsPreferences preferences(QStringLiteral("/proc/none/Mosa.conf"));
    preferences.setString(QStringLiteral("a"), QStringLiteral("1"));
    QCOMPARE(preferences.string(QStringLiteral("a")), QStringLiteral("1"));
}

QTEST_GUILESS_MAIN(SettingsPreferencesTest)
#include "SettingsPreferencesTest.moc"
