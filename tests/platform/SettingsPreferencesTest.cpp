#include "SettingsPreferences.h"

#include "FileURL.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class SettingsPreferencesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsTexts_data() {
        QTest::addColumn<QString>("value");

        QTest::newRow("path") << u"/home/me/Pictures, old; \"x\" %20 = \\n"_s;
        QTest::newRow("empty") << u""_s;
        QTest::newRow("beyond ASCII") << u"/Bilder/Grüße 🦊 日本"_s;
        QTest::newRow("line break") << u"/a\nb\tc"_s;
        QTest::newRow("looks like a typed value") << u"@ByteArray(x)"_s;
        QTest::newRow("not UTF-8") << FileURL::decode("/a/\xE9t\xE9/\xF0\x9F");
    }

    void keepsTexts() {
        QFETCH(QString, value);
        const QTemporaryDir directory;
        const QString file = directory.filePath(u"sub/Mosa.conf"_s);
        const QString key = u"MosaLastFolder"_s;
        {
            SettingsPreferences preferences(file);
            QVERIFY(!preferences.string(key));
            preferences.setString(key, u"first"_s);
            preferences.setString(key, value);
            QCOMPARE(preferences.string(key), value);
        }
        QVERIFY(QFile::exists(file));
        QCOMPARE(SettingsPreferences(file).string(key), value);
    }

    void leavesOtherKeysAlone() {
        const QTemporaryDir directory;
        const QString file = directory.filePath(u"Mosa.conf"_s);
        {
            // As two running programs.
            SettingsPreferences one(file);
            SettingsPreferences other(file);
            one.setString(u"a"_s, u"1"_s);
            other.setString(u"b"_s, u"2"_s);
        }
        const SettingsPreferences both(file);
        QCOMPARE(both.string(u"a"_s), u"1"_s);
        QCOMPARE(both.string(u"b"_s), u"2"_s);
    }

    void ignoresAFileThatCannotBeWritten() {
        SettingsPreferences preferences(u"/proc/none/Mosa.conf"_s);
        preferences.setString(u"a"_s, u"1"_s);
        QCOMPARE(preferences.string(u"a"_s), u"1"_s);
    }
};

QTEST_GUILESS_MAIN(SettingsPreferencesTest)
#include "SettingsPreferencesTest.moc"
