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
        const auto row = [](const char *name, const QByteArray &bytes, QString text,
                            const QByteArray &escaped = {}) {
            for (const char byte : escaped) {
                text += QChar(char16_t(0xDC00 + uchar(byte)));
            }
            QTest::newRow(name) << bytes << text;
        };
        row("ascii", "/a/b c.jpg", u"/a/b c.jpg"_s);
        row("two, three, four bytes", "/\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\x85", u"/ä€🌅"_s);
        row("latin-1", "/caf\xE9", u"/caf"_s, "\xE9");
        // Its low surrogate lies in the range of the escapes.
        row("low surrogate like an escape", "\xF0\x90\x82\x80\x80", u"\U00010080"_s, "\x80");
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
        const auto row = [](const char *title, const char *path, const char *name, const char *extension,
                            const char *parent) {
            QTest::newRow(title) << QByteArray(path) << QByteArray(name) << QString::fromLatin1(extension)
                                 << QByteArray(parent);
        };
        row("file", "/a/b.JPG", "b.JPG", "JPG", "/a");
        row("folder", "/a/b/", "b", "", "/a");
        row("two dots", "/a.b/c.tar.gz", "c.tar.gz", "gz", "/a.b");
        row("hidden", "/.jpg", ".jpg", "", "/");
        row("hidden with extension", "/.a.jpg", ".a.jpg", "jpg", "/");
        row("dot at end", "/a/b.", "b.", "", "/a");
        row("root", "/", "/", "", "/");
        row("empty", "", "", "", "");
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
        row("above", "../x", "/x");
        row("unclean", "/a//b/./c/../d/", "/a/b/d");
        row("stray bytes", "/caf\xE9", "/caf\xE9");
        row("percent in a path", "/a%20b", "/a%20b");
        row("colon and slashes in a path", "/a://b", "/a:/b");
        row("uri", "file:///a/b%20c", "/a/b c");
        row("uri with host", "file://localhost/a", "/a");
        row("uri with capitals", "FILE://LOCALHOST/a", "/a");
        row("uri without authority", "file:/a/b", "/a/b");
        row("uri of stray bytes", "file:///caf%E9%0A", "/caf\xE9\n");
        row("other host", "file://server/a", "");
        row("other scheme", "https://example.org/a", "");
        row("zero byte", "file:///a%00b", "");
        row("empty", "", "");
    }

    void arguments() {
        QFETCH(QByteArray, argument);
        QFETCH(QByteArray, path);
        const auto url = FileURL::fromArgument(argument, "/some dir/");
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
