#include "MainWindow.h"

#include "NotificationCentre.h"
#include "NotificationNames.h"

#include <QQmlComponent>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

class MainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// Whoever changes it: here not the program.
    void announcesFullScreen() {
        constexpr int limit = 30'000;
        MainWindow window;
        window.open();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QStringList names;
        connect(&NotificationCentre::defaultCentre(), &NotificationCentre::posted, &window,
                [&](const QString &name) {
                    if (!names.contains(name)) {
                        names.append(name);
                    }
                });
        window.setWindowStates(Qt::WindowFullScreen);
        QTRY_COMPARE_WITH_TIMEOUT(names,
                                  QStringList({NotificationNames::windowWillEnterFullScreen,
                                               NotificationNames::windowDidEnterFullScreen}),
                                  limit);
        QVERIFY(window.isFullScreen());
        names.clear();
        window.setWindowStates(Qt::WindowNoState);
        QTRY_COMPARE_WITH_TIMEOUT(names,
                                  QStringList({NotificationNames::windowWillExitFullScreen,
                                               NotificationNames::windowDidExitFullScreen}),
                                  limit);
        QVERIFY(!window.isFullScreen());
    }

    // What takes presses and what leaves them to the window.
    void doubleClickZooms_data() {
        QTest::addColumn<QByteArray>("child");
        QTest::addColumn<bool>("zooms");
        QTest::newRow("bare background") << QByteArray("Rectangle {}") << true;
        QTest::newRow("mouse area") << QByteArray("MouseArea {}") << false;
        QTest::newRow("tap handler") << QByteArray("Item { TapHandler {} }") << false;
        QTest::newRow("hover handler") << QByteArray("Item { HoverHandler {} }") << true;
        QTest::newRow("gone with the first click")
            << QByteArray("MouseArea { property int clicks; onClicked: visible = ++clicks < 2 }") << false;
        QTest::newRow("come with the first click")
            << QByteArray("MouseArea { onDoubleClicked: Window.window.toggleMaximised(); "
                          "MouseArea { anchors.fill: parent; property int clicks; onClicked: visible = "
                          "++clicks < 2 } }")
            << false;
        QTest::newRow("list") << QByteArray("Flickable { contentHeight: 9000 }") << false;
    }

    void doubleClickZooms() {
        QFETCH(QByteArray, child);
        QFETCH(bool, zooms);
        MainWindow window;
        QQmlComponent component(window.engine());
        component.setData("import QtQuick\nItem { " +
                              child.insert(child.indexOf('{') + 1, " anchors.fill: parent; ") + " }",
                          {});
        auto *root = qobject_cast<QQuickItem *>(component.create());
        QVERIFY2(root != nullptr, qPrintable(component.errorString()));
        window.setContent({}, &component, root);
        window.open();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::mouseClick(&window, Qt::LeftButton, {}, {400, 300});
        QTest::mouseDClick(&window, Qt::LeftButton, {}, {400, 300});
        QCOMPARE(window.isMaximised(), zooms);
        QSignalSpy menus(&window, &MainWindow::menuRequested);
        QTest::mouseClick(&window, Qt::RightButton, {}, {400, 300});
        QCOMPARE(menus.size(), zooms ? 1 : menus.size());
    }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
