#include "MainWindow.h"

#include "NotificationCentre.h"
#include "NotificationNames.h"
#include "Preferences.h"

#include <QHash>
#include <QQmlComponent>
#include <QQuickItem>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr int limit = 30000;
const QString key = QStringLiteral("MosaMainWindow");

class MemoryPreferences : public Preferences {
public:
    std::optional<QString> string(const QString &name) const override {
        return values.contains(name) ? std::optional(values.value(name)) : std::nullopt;
    }
    void setString(const QString &name, const QString &value) override { values.insert(name, value); }
    QHash<QString, QString> values;
};

void clickTwice(QWindow &window, QPoint point) {
    QTest::mouseClick(&window, Qt::LeftButton, {}, point);
    QTest::mouseDClick(&window, Qt::LeftButton, {}, point);
}

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void opensAtItsFirstSize() {
        MainWindow window;
        window.open();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QSize room = window.screen()->availableGeometry().size();
        QCOMPARE(window.size(), MainWindow::firstFrame.boundedTo(room).expandedTo({920, 620}));
        QCOMPARE(window.minimumSize(), QSize(920, 620));
        QCOMPARE(window.title(), QStringLiteral("Mosa"));
        QVERIFY(window.flags().testFlag(Qt::FramelessWindowHint));
    }

    void keepsItsFrame_data() {
        QTest::addColumn<bool>("closes");
        QTest::newRow("a moment after a change") << false;
        QTest::newRow("at once when it closes") << true;
    }

    void keepsItsFrame() {
        QFETCH(bool, closes);
        MemoryPreferences preferences;
        // Smaller than the platform's only screen.
        const QRect frame(7, 9, 330, 240);
        {
            MainWindow window(&preferences);
            window.setMinimumSize({300, 200});
            window.open();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            window.setGeometry(frame);
            QTRY_COMPARE_WITH_TIMEOUT(window.geometry(), frame, limit);
            if (closes) {
                window.close();
                QVERIFY(preferences.values.contains(key));
            } else {
                QTRY_VERIFY_WITH_TIMEOUT(preferences.values.contains(key), limit);
            }
        }
        MainWindow again(&preferences);
        again.setMinimumSize({300, 200});
        again.open();
        QCOMPARE(again.geometry(), frame);
    }

    void keepsTheFrameBeneathSpecialStates_data() {
        QTest::addColumn<Qt::WindowState>("state");
        QTest::addColumn<bool>("maximisedAgain");
        QTest::newRow("maximised") << Qt::WindowMaximized << true;
        QTest::newRow("full screen") << Qt::WindowFullScreen << false;
    }

    void keepsTheFrameBeneathSpecialStates() {
        QFETCH(Qt::WindowState, state);
        QFETCH(bool, maximisedAgain);
        MemoryPreferences preferences;
        MainWindow window(&preferences);
        window.open();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QRect frame(5, 6, 925, 630);
        window.setGeometry(frame);
        QTRY_VERIFY_WITH_TIMEOUT(preferences.values.contains(key), limit);
        window.setWindowStates(state);
        QTRY_VERIFY_WITH_TIMEOUT(window.windowStates().testFlag(state), limit);
        window.close();
        const auto kept = WindowFrame::fromText(preferences.values.value(key));
        QVERIFY(kept.has_value());
        QCOMPARE(kept->frame, frame);
        QCOMPARE(kept->maximised, maximisedAgain);
        MainWindow again(&preferences);
        again.open();
        QCOMPARE(again.isMaximised(), maximisedAgain);
    }

    void announcesFullScreen_data() {
        QTest::addColumn<bool>("byProgram");
        QTest::newRow("asked for by the program") << true;
        QTest::newRow("changed by the desktop") << false;
    }

    void announcesFullScreen() {
        QFETCH(bool, byProgram);
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
        const auto toggle = [&] {
            if (byProgram) {
                window.toggleFullScreen();
            } else {
                window.setWindowStates(window.windowStates() ^ Qt::WindowFullScreen);
            }
        };
        toggle();
        QTRY_COMPARE_WITH_TIMEOUT(names,
                                  QStringList({NotificationNames::windowWillEnterFullScreen,
                                               NotificationNames::windowDidEnterFullScreen}),
                                  limit);
        QVERIFY(window.isFullScreen());
        names.clear();
        toggle();
        QTRY_COMPARE_WITH_TIMEOUT(names,
                                  QStringList({NotificationNames::windowWillExitFullScreen,
                                               NotificationNames::windowDidExitFullScreen}),
                                  limit);
        QVERIFY(!window.isFullScreen());
    }

    void returnsFromFullScreenMaximised() {
        MainWindow window;
        window.open();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.toggleMaximised();
        QVERIFY(window.isMaximised());
        window.toggleFullScreen();
        QVERIFY(window.isFullScreen() && !window.isMaximised());
        window.toggleMaximised();
        QVERIFY(window.isFullScreen());
        window.toggleFullScreen();
        QVERIFY(window.isMaximised());
        window.toggleMaximised();
        QVERIFY(!window.isMaximised());
    }

    // What takes presses and what leaves them to the window.
    void doubleClickZooms_data() {
        QTest::addColumn<QByteArray>("child");
        QTest::addColumn<bool>("zooms");
        QTest::newRow("bare background") << QByteArray("Rectangle {}") << true;
        QTest::newRow("mouse area") << QByteArray("MouseArea {}") << false;
        QTest::newRow("tap handler") << QByteArray("Item { TapHandler {} }") << false;
        QTest::newRow("hover handler") << QByteArray("Item { HoverHandler {} }") << true;
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
        clickTwice(window, {400, 300});
        QCOMPARE(window.isMaximised(), zooms);
        QSignalSpy menus(&window, &MainWindow::menuRequested);
        QTest::mouseClick(&window, Qt::RightButton, {}, {400, 300});
        QCOMPARE(menus.size(), zooms ? 1 : menus.size());
    }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
