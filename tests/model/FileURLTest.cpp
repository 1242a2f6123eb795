#include "FileURL.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

class FileURLTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void mapping_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        const auto escaped = [](uchar byte) { return QString(QChar(char16_t(0xDC00 + byte))); };
        QTest::newRow("ascii") << "/a/b c.jpg"_ba << u"/a/b c.jpg"_s;
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("two, three, four bytes") << "/\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\x85"_ba << u"/ä€🌅"_s;
        QTest::newRow("latin-1") << "/caf\xE9"_ba << u"/caf"_s + escaped(0xE9);
        QTest::newRow("cut sequence") << "/\xE2\x82"_ba << u"/"_s + escaped(0xE2) + escaped(0x82);
        QTest::newRow("overlong slash") << "\xC0\xAF"_ba << escaped(0xC0) + escaped(0xAF);
        QTest::newRow("overlong three") << "\xE0\x80\xAF"_ba << escaped(0xE0) + escaped(0x80) + escaped(0xAF);
        QTest::newRow("overlong four")
            << "\xF0\x80\x80\xAF"_ba << escaped(0xF0) + escaped(0x80) + escaped(0x80) + escaped(0xAF);
        // The UTF-8 form of a surrogate, alone and as a pair, is not UTF-8.
        QTest::newRow("surrogate") << "\xED\xB3\xA9"_ba << escaped(0xED) + escaped(0xB3) + escaped(0xA9);
        QTest::newRow("CESU-8") << "\xED\xA0\xBC\xED\xBC\x85"_ba
                                << escaped(0xED) + escaped(0xA0) + escaped(0xBC) + escaped(0xED) +
                                       escaped(0xBC) + escaped(0x85);
        QTest::newRow("beyond Unicode")
            << "\xF4\x90\x80\x80"_ba << escaped(0xF4) + escaped(0x90) + escaped(0x80) + escaped(0x80);
        QTest::newRow("last character") << "\xF4\x8F\xBF\xBF"_ba << u"\U0010FFFF"_s;
        QTest::newRow("byte order mark") << "\xEF\xBB\xBFx"_ba << QString(QChar(0xFEFF)) + u'x';
        QTest::newRow("byte order mark after a stray byte")
            << "/\xFF\xEF\xBB\xBFx"_ba << u"/"_s + escaped(0xFF) + QChar(0xFEFF) + u'x';
        // Its low surrogate lies in the range of the escapes.
        QTest::newRow("low surrogate like an escape")
            << "\xF0\x90\x82\x80\x80"_ba << u"\U00010080"_s + escaped(0x80);
        QTest::newRow("control") << "/a\nb\x7F\x01"_ba << u"/a\nb\x7F\x01"_s;
    }

    void mapping() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QCOMPARE(FileURL::decode(bytes), text);
        QCOMPARE(FileURL::encode(text), bytes);
    }

    void mappingIsReversible() {
        std::mt19937 random(3);
        // Bytes that make and break sequences more often than chance would.
        const QByteArray alphabet("a/\x80\x8F\x90\x9F\xA0\xBF\xC0\xC2\xE0\xED\xEF\xBB\xF0\xF4\xF5\xFF");
        for (int round = 0; round < 50'000; ++round) {
            QByteArray bytes;
            for (int i = 0; i < round % 12; ++i) {
                bytes += alphabet[qsizetype(random() % quint32(alphabet.size()))];
            }
            QCOMPARE(FileURL::encode(FileURL::decode(bytes)), bytes);
        }
    }

    void components_data() {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QByteArray>("parent");
        QTest::newRow("file") << "/a/b.JPG"_ba
                              << "b.JPG"_ba << u"JPG"_s << "/a"_ba;
        QTest::newRow("folder") << "/a/b/"_ba
                                << "b"_ba << QString() << "/a"_ba;
        QTest::newRow("two dots") << "/a.b/c.tar.gz"_ba
                                  << "c.tar.gz"_ba << u"gz"_s << "/a.b"_ba;
        QTest::newRow("hidden") << "/.jpg"_ba
                                << ".jpg"_ba << QString() << "/"_ba;
        QTest::newRow("hidden with extension") << "/.a.jpg"_ba
                                               << ".a.jpg"_ba << u"jpg"_s << "/"_ba;
        QTest::newRow("dot at end") << "/a/b."_ba
                                    << "b."_ba << QString() << "/a"_ba;
        QTest::newRow("root") << "/"_ba
                              << "/"_ba << QString() << "/"_ba;
        QTest::newRow("empty") << QByteArray() << QByteArray() << QString() << QByteArray();
    }

    void components() {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, name);
        QFETCH(QString, extension);
        QFETCH(QByteArray, parent);
        const FileURL url = FileURL::fromNativePath(path);
        QCOMPARE(url.nativeName(), name);
        QCOMPARE(url.lastPathComponent(), FileURL::decode(name));
        QCOMPARE(url.pathExtension(), extension);
        QCOMPARE(url.deletingLastPathComponent().nativePath(), parent);
        QCOMPARE(url.hasDirectoryPath(), path.endsWith('/'));
    }

    void arguments_data() {
        QTest::addColumn<QByteArray>("argument");
        // Empty: none.
        QTest::addColumn<QByteArray>("path");
        const auto row = [](const char *name, const char *argument, const char *path) {
            QTest::newRow(name) << QByteArray(argument) << QByteArray(path);
        };
        row("plain", "/a/b", "/a/b");
        row("relative", "b/c", "/work dir/b/c");
        row("here", ".", "/work dir");
        row("above", "../x", "/x");
        row("unclean", "/a//b/./c/../d/", "/a/b/d");
        row("stray bytes", "/caf\xE9", "/caf\xE9");
        row("percent in a path", "/a%20b", "/a%20b");
        row("colon in a path", "a:b", "/work dir/a:b");
        row("colon and slashes in a path", "/a://b", "/a:/b");
        row("uri", "file:///a/b%20c", "/a/b c");
        row("uri with host", "file://localhost/a", "/a");
        row("uri with capitals", "FILE://LOCALHOST/a", "/a");
        row("uri without authority", "file:/a/b", "/a/b");
        row("uri of stray bytes", "file:///caf%E9%0A", "/caf\xE9\n");
        row("uri of the root", "file:///", "/");
        row("other host", "file://server/a", "");
        row("no path", "file://localhost", "");
        row("other scheme", "https://example.org/a", "");
        row("zero byte", "file:///a%00b", "");
        row("empty", "", "");
    }

    void arguments() {
        QFETCH(QByteArray, argument);
        QFETCH(QByteArray, path);
        const auto url = FileURL::fromArgument(argument, "/work dir/");
        QCOMPARE(url.has_value(), !path.isEmpty());
        QCOMPARE(url.value_or(FileURL()).nativePath(), path);
    }

    void uriLeadsBack() {
        const FileURL url = FileURL::fromNativePath("/caf\xE9 \n%41?#&;~.jpg");
        QCOMPARE(FileURL::fromArgument(url.uri(), "/"), std::optional(url));
        for (const char byte : url.uri()) {
            QVERIFY(byte > ' ' && uchar(byte) < 0x7F);
        }
    }

    void identity() {
        const FileURL folder = FileURL::directory("/a/b");
        QCOMPARE(folder, FileURL::fromNativePath("/a/b"));
        QCOMPARE(qHash(folder), qHash(FileURL::fromNativePath("/a/b//")));
        QVERIFY(folder.hasDirectoryPath());
        QCOMPARE(folder.appending("c.jpg").nativePath(), "/a/b/c.jpg"_ba);
        QCOMPARE(FileURL::directory("/").appending("c").nativePath(), "/c"_ba);
        QCOMPARE(FileURL::fromPath(folder.path()), folder);
    }
};

QTEST_GUILESS_MAIN(FileURLTest)
#include "FileURLTest.moc"
