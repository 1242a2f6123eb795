#include "FolderBrowser.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class FolderBrowserTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_directory = std::make_unique<QTemporaryDir>();
        const QDir directory(m_directory->path());
        for (const char *name : {"b10", "B9", ".hidden", "a/inner"}) {
            QVERIFY(directory.mkpath(QLatin1String(name)));
        }
        QVERIFY(QFile(path("file.txt")).open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(path("a"), path("link")));
        QVERIFY(QFile::link(path("nowhere"), path("broken")));
        m_browser = std::make_unique<FolderBrowser>();
        open();
    }

    void showsHiddenFoldersOnRequest() {
        m_browser->setShowHidden(true);
        QCOMPARE(names(), QStringLiteral(".hidden a B9 b10 link"));
        m_browser->setShowHidden(false);
        m_browser->edit(path(".h"));
        QCOMPARE(names(), QStringLiteral(".hidden"));
    }

    void narrowsToWhatIsTyped_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<QString>("completion");

        const auto row = [](const char *title, const char *typed, const char *rows, const char *completion) {
            QTest::newRow(title) << QString::fromLatin1(typed) << QString::fromLatin1(rows)
                                 << QString::fromLatin1(completion);
        };
        row("beginning in another case", "b", "B9 b10", "b10");
        row("only another case", "LI", "link", "link");
        row("no such name", "x", "", "");
        row("nothing", "", "a B9 b10 link", "");
    }

    void narrowsToWhatIsTyped() {
        QFETCH(QString, typed);
        m_browser->edit(m_directory->path() + u'/' + typed);
        QTEST(names(), "rows");
        QTEST(m_browser->completion(), "completion");
    }

    void followsATypedPath() {
        m_browser->edit(path("a/"));
        QTRY_COMPARE(names(), QStringLiteral("inner"));
        QCOMPARE(m_browser->text(), path("a/"));
        m_browser->edit(QStringLiteral("~/"));
        QTRY_VERIFY(!m_browser->busy());
        QCOMPARE(m_browser->folderPath(), QDir::homePath());
        // Half a path lists nothing new, and cannot be chosen.
        m_browser->edit(QStringLiteral("a"));
        QCOMPARE(m_browser->folderPath(), QDir::homePath());
        m_browser->accept();
        QVERIFY(!m_browser->error().isEmpty());
    }

    void goesUpAndDown() {
        m_browser->enter(0);
        QTRY_COMPARE(names(), QStringLiteral("inner"));
        QCOMPARE(m_browser->text(), path("a/"));
        m_browser->up();
        QTRY_COMPARE(names(), QStringLiteral("a B9 b10 link"));
        m_browser->openPath(QStringLiteral("/"));
        m_browser->up();
        QCOMPARE(m_browser->text(), QStringLiteral("/"));
    }

    void keepsNamesByteExact() {
        const QByteArray name = "z\xE9 \n\"x\"";
        const QByteArray native = QFile::encodeName(m_directory->path()) + '/' + name;
        QCOMPARE(::mkdir(native.constData(), 0755), 0);
        open();
        QCOMPARE(m_browser->rowCount(), 5);
        m_browser->select(4);
        QCOMPARE(m_browser->currentRow(), 4);
        QCOMPARE(m_browser->rowCount(), 5);
        QSignalSpy accepted(m_browser.get(), &FolderBrowser::accepted);
        m_browser->accept();
        QTRY_COMPARE(accepted.size(), 1);
        const auto folder = accepted[0][0].value<FileURL>();
        QCOMPARE(folder.nativePath(), native);
        QVERIFY(folder.hasDirectoryPath());
        QCOMPARE(::rmdir(native.constData()), 0);
    }

    void makesNoFolderOfSuchAName() {
        const auto existing = QStringLiteral("“%1” is already there.");
        const auto impossible = QStringLiteral("“%1” cannot be the name of a folder.");
        for (const auto &[name, error] :
             {std::pair("a", existing), {"a/b", impossible}, {".", impossible}, {"", impossible}}) {
            m_browser->edit(path("b"));
            QVERIFY(m_browser->error().isEmpty());
            m_browser->createFolder(QString::fromLatin1(name));
            QTRY_COMPARE(m_browser->error(), error.arg(QLatin1String(name)));
            QCOMPARE(m_browser->folderPath(), m_directory->path());
        }
    }

    void refusesWhatIsNoFolder() {
        const QSignalSpy accepted(m_browser.get(), &FolderBrowser::accepted);
        for (const char *name : {"file.txt", "nothing", "broken"}) {
            m_browser->edit(path(name));
            QVERIFY(m_browser->error().isEmpty());
            m_browser->accept();
            QTRY_COMPARE(m_browser->error(),
                         QStringLiteral("There is no folder “%1”.").arg(QLatin1String(name)));
        }
        QCOMPARE(accepted.size(), 0);
    }

    void forgetsAnswersToOldQuestions() {
        const QSignalSpy accepted(m_browser.get(), &FolderBrowser::accepted);
        m_browser->edit(path("a"));
        m_browser->accept();
        m_browser->edit(path("nothing"));
        m_browser->enter(0);
        m_browser->openPath(path("a"));
        m_browser->openPath(m_directory->path());
        QTRY_COMPARE(names(), QStringLiteral("a B9 b10 link"));
        QTest::qWait(20);
        QCOMPARE(names(), QStringLiteral("a B9 b10 link"));
        QCOMPARE(accepted.size(), 0);
    }

private:
    QString path(const char *name) const {
        return m_directory->path() + QLatin1Char('/') + QLatin1String(name);
    }
    QString names() const {
        QStringList names;
        for (int row = 0; row < m_browser->rowCount(); ++row) {
            names.append(m_browser->index(row).data(FolderBrowser::NameRole).toString());
        }
        return names.join(u' ');
    }
    void open() {
        m_browser->openPath(m_directory->path());
        QTRY_VERIFY(!m_browser->busy());
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<FolderBrowser> m_browser;
};

QTEST_GUILESS_MAIN(FolderBrowserTest)
#include "FolderBrowserTest.moc"
