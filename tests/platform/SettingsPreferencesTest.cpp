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
};

QTEST_GUILESS_MAIN(SettingsPreferencesTest)
#include "SettingsPreferencesTest.moc"
