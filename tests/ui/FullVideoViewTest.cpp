#include "AppState.h"
#include "MPVPlayerController.h"
#include "NotificationCentre.h"
#include "NotificationNames.h"
#include "RecordingMPV.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <QtQml/QQmlExtensionPlugin>

#include <memory>

Q_IMPORT_QML_PLUGIN(Mosa_StatePlugin)
Q_IMPORT_QML_PLUGIN(Mosa_PlaybackPlugin)
Q_IMPORT_QML_PLUGIN(Mosa_UIPlugin)

namespace {

QAccessibleInterface *find(QAccessibleInterface *root, const QString &name) {
    if (!root || root->text(QAccessible::Name) == name) {
        return root;
    }
    for (int i = 0; i < root->childCount(); ++i) {
        if (QAccessibleInterface *found = find(root->child(i), name)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

/// The full-window video viewer, driven through the accessibility bus' interfaces, with a recorded player
/// library.
class FullVideoViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void startsAudible();
    void pausesAndPlays();
    void togglesOnNotification();
    void tellsWhereItIsHeard();
    void scrubs();
    void setsTheVolume();
    void cyclesSubtitles();
    void flags();
    void closes_data();
    void closes();
    void singleClicksDoNothing();
    void shutsDownWithItsView();

private:
    QAccessibleInterface *control(const char *name) const {
        return find(QAccessible::queryAccessibleInterface(m_view.get()), QString::fromUtf8(name));
    }
    bool press(const char *name) const {
        QAccessibleInterface *found = control(name);
        if (!found || !found->actionInterface()) {
            return false;
        }
        found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        return true;
    }
    MPVPlayerController *player() const {
        return m_view->rootObject()->property("controller").value<MPVPlayerController *>();
    }

    std::unique_ptr<RecordingMPV> m_mpv;
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<QQuickView> m_view;
    MediaFile m_item;
};

void FullVideoViewTest::init() {
    QAccessible::setActive(true);
    m_mpv = std::make_unique<RecordingMPV>();
    m_mpv->properties = {{"duration", "100"}, {"time-pos", "12"}, {"mute", "no"}};
    MPVFunctions::setStandard(&m_mpv->functions());
    m_state = std::make_unique<AppState>(AppState::Services{});
    m_item.url = FileURL::fromNativePath("/films/one\ntwo.mp4");
    m_state->openFullItem(m_item);
    m_view = std::make_unique<QQuickView>();
    m_view->engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->resize(1000, 600);
    m_view->setInitialProperties({{QStringLiteral("item"), QVariant::fromValue(m_item)},
                                  {QStringLiteral("state"), QVariant::fromValue(m_state.get())}});
    m_view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Mosa/UI/FullVideoView.qml")));
    QVERIFY2(m_view->rootObject(), qPrintable(m_view->errors().value(0).toString()));
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void FullVideoViewTest::cleanup() {
    m_view.reset();
    QCOMPARE(m_mpv->calls.count(QStringLiteral("terminate_destroy")), 1);
    m_state.reset();
    MPVFunctions::setStandard(nullptr);
    m_mpv.reset();
}

void FullVideoViewTest::startsAudible() {
    QVERIFY(!player()->preview());
    QVERIFY(!player()->isMuted());
    QVERIFY(m_mpv->calls.count(QStringLiteral("set mute=no")) == 2); // made so, and once more as it appears
    QTRY_VERIFY(control("0:12") && control("1:40"));
    QVERIFY(control("one two.mp4"));
}

void FullVideoViewTest::pausesAndPlays() {
    m_mpv->take();
    QVERIFY(press("Pause"));
    QVERIFY(m_mpv->calls.contains(QStringLiteral("set pause=yes")));
    QVERIFY(!control("Pause"));
    QVERIFY(press("Play"));
    QVERIFY(m_mpv->calls.contains(QStringLiteral("set pause=no")));
}

void FullVideoViewTest::togglesOnNotification() {
    NotificationCentre::defaultCentre().post(NotificationNames::mosaTogglePlayback);
    QVERIFY(player()->paused());
    NotificationCentre::defaultCentre().post(NotificationNames::mosaTogglePlayback, 42);
    QVERIFY(!player()->paused());
}

void FullVideoViewTest::tellsWhereItIsHeard() {
    QCOMPARE(control("Mute")->text(QAccessible::Description), QStringLiteral("Audio on"));
    m_mpv->properties.insert("current-ao", "pulse");
    QTRY_COMPARE(control("Mute")->text(QAccessible::Description), QStringLiteral("Audio on · pulse"));
    m_mpv->properties.insert("mute", "yes");
    QVERIFY(press("Mute"));
    QCOMPARE(control("Unmute")->text(QAccessible::Description), QStringLiteral("Audio off"));
    QVERIFY(m_mpv->calls.contains(QStringLiteral("set mute=yes")));
}

void FullVideoViewTest::scrubs() {
    QTRY_COMPARE(player()->duration(), 100.0);
    QAccessibleInterface *scrubber = control("Position");
    QTRY_COMPARE(scrubber->valueInterface()->maximumValue().toDouble(), 100.0);
    QTRY_COMPARE(scrubber->valueInterface()->currentValue().toDouble(), 12.0);
    // Following the player seeks nothing.
    QVERIFY(m_mpv->calls.filter(QStringLiteral("seek")).isEmpty());
    scrubber->valueInterface()->setCurrentValue(30.5);
    QCOMPARE(m_mpv->calls.filter(QStringLiteral("seek")),
             QStringList{QStringLiteral("command seek 30.5 absolute+exact")});
    QCOMPARE(player()->position(), 30.5);
    m_mpv->properties.insert("time-pos", "31");
    QTRY_COMPARE(scrubber->valueInterface()->currentValue().toDouble(), 31.0);

    const QPoint end = scrubber->rect().center() - m_view->position();
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, end);
    QTest::mouseMove(m_view.get(), end + QPoint(100, 0));
    QTest::mouseMove(m_view.get(), end + QPoint(200, 0));
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, end + QPoint(200, 0));
    QVERIFY(m_mpv->calls.filter(QStringLiteral("seek")).count() >= 2);
    QVERIFY(player()->position() > 60);
}

void FullVideoViewTest::setsTheVolume() {
    QAccessibleInterface *volume = control("Volume");
    QCOMPARE(volume->valueInterface()->currentValue().toDouble(), 70.0);
    m_mpv->take();
    volume->valueInterface()->setCurrentValue(55.7);
    QCOMPARE(m_mpv->calls.filter(QStringLiteral("volume")), QStringList{QStringLiteral("set volume=55")});
    QCOMPARE(player()->volume(), 55.7);
}

void FullVideoViewTest::cyclesSubtitles() {
    QVERIFY(press("Cycle Subtitles"));
    QVERIFY(m_mpv->calls.contains(QStringLiteral("command cycle sub")));
}

void FullVideoViewTest::flags() {
    QVERIFY(press("Flag"));
    QVERIFY(m_state->isFlagged(m_item.id()));
    QVERIFY(press("Remove Flag"));
    QVERIFY(!m_state->isFlagged(m_item.id()));
}

void FullVideoViewTest::closes_data() {
    QTest::addColumn<bool>("byButton");
    QTest::newRow("button") << true;
    QTest::newRow("double click") << false;
}

void FullVideoViewTest::closes() {
    QFETCH(bool, byButton);
    if (byButton) {
        QVERIFY(press("Close"));
    } else {
        QTest::mouseDClick(m_view.get(), Qt::LeftButton, {}, QPoint(500, 200));
    }
    QVERIFY(!m_state->fullItem());
}

void FullVideoViewTest::singleClicksDoNothing() {
    m_mpv->take();
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, QPoint(500, 200));
    // Nor does a double click that misses the controls of the bar.
    QTest::mouseDClick(m_view.get(), Qt::LeftButton, {}, QPoint(3, 597));
    QVERIFY(m_state->fullItem());
    QVERIFY(m_mpv->calls.filter(QStringLiteral("set ")).isEmpty());
}

void FullVideoViewTest::shutsDownWithItsView() {
    m_mpv->take();
    delete m_view->rootObject();
    QVERIFY(m_mpv->calls.contains(QStringLiteral("terminate_destroy")));
}

QTEST_MAIN(FullVideoViewTest)
#include "FullVideoViewTest.moc"
