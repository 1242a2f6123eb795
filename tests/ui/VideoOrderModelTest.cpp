#include <QSignalSpy>
#include <QTest>

#include "../state/AppStateFixture.h"
#include "VideoOrderModel.h"

class VideoOrderModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsMoves_data();
    void tellsMoves();
    void startsAnewForOtherLists();
};

void VideoOrderModelTest::tellsMoves_data() {
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("destination");
    QTest::addColumn<int>("moves");

    QTest::newRow("one up") << 3 << 2 << 1;
    QTest::newRow("one down") << 3 << 5 << 1;
    QTest::newRow("to the top") << 4 << 0 << 1;
    QTest::newRow("to the bottom") << 0 << 6 << 1;
    QTest::newRow("far down") << 1 << 5 << 1;
    QTest::newRow("nowhere") << 2 << 2 << 0;
}

void VideoOrderModelTest::tellsMoves() {
    QFETCH(int, from);
    QFETCH(int, destination);
    AppStateFixture fixture;
    QVERIFY(fixture.show(scanResult("/f", 6, 0)));
    VideoOrderModel model;
    model.setState(fixture.state.get());
    QCOMPARE(model.rowCount(), 6);
    QList<QPersistentModelIndex> rows;
    for (int row = 0; row < 6; ++row) {
        rows.append(model.index(row));
    }
    const QSignalSpy moved(&model, &QAbstractItemModel::rowsMoved);
    const QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    fixture.state->moveVideo(from, destination);
    QTEST(int(moved.size()), "moves");
    QCOMPARE(reset.size(), 0);
    // Every row still stands for the video that it stood for, wherever it is now.
    for (int i = 0; i < 6; ++i) {
        const QString id = QStringLiteral("/f/v%1.mp4").arg(i);
        QCOMPARE(rows[i].data(VideoOrderModel::IdRole).toString(), id);
        QCOMPARE(fixture.state->videos()[rows[i].row()].id(), id);
    }
}

void VideoOrderModelTest::startsAnewForOtherLists() {
    AppStateFixture fixture;
    QVERIFY(fixture.show(scanResult("/f", 6, 0)));
    VideoOrderModel model;
    model.setState(fixture.state.get());
    const QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    QVERIFY(fixture.show(scanResult("/g", 3, 0)));
    QCOMPARE(reset.size(), 1);
    QCOMPARE(model.count(), 3);
    QCOMPARE(model.index(2).data(VideoOrderModel::NameRole).toString(), QStringLiteral("v2.mp4"));
}

QTEST_GUILESS_MAIN(VideoOrderModelTest)
#include "VideoOrderModelTest.moc"
