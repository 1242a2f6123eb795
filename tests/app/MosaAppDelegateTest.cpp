#include "MosaAppDelegate.h"

#include "NotificationCentre.h"
#include "NotificationNames.h"

#include <QSignalSpy>
#include <QTest>

class MosaAppDelegateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void announcesTheFirstLater_data() {
        QTest::addColumn<QList<FileURL>>("urls");
        QTest::addColumn<int>("posts");
        const FileURL first = FileURL::directory("/a\xFF");
        QTest::newRow("none") << QList<FileURL>() << 0;
        QTest::newRow("one") << QList<FileURL>{first} << 1;
        QTest::newRow("several") << QList<FileURL>{first, FileURL::directory("/b")} << 1;
    }

    void announcesTheFirstLater() {
        QFETCH(QList<FileURL>, urls);
        QFETCH(int, posts);
        QSignalSpy posted(&NotificationCentre::defaultCentre(), &NotificationCentre::posted);
        MosaAppDelegate delegate;
        delegate.applicationOpen(urls);
        QCOMPARE(posted.size(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(posted.size(), posts);
        if (posts > 0) {
            QCOMPARE(posted[0][0].toString(), NotificationNames::mosaOpenFolder);
            QCOMPARE(posted[0][1].value<QVariant>().value<FileURL>(), urls.constFirst());
        }
    }

    void endsWithItsWindow() { QVERIFY(MosaAppDelegate().applicationShouldTerminateAfterLastWindowClosed()); }
};

QTEST_GUILESS_MAIN(MosaAppDelegateTest)
#include "MosaAppDelegateTest.moc"
