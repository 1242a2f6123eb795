#include <QSignalSpy>
#include <QTest>

#include "../state/AppStateFixture.h"
#include "KeyMap.h"
#include "KeyPress.h"
#include "NotificationCentre.h"

using Key = KeyPress::Key;

namespace {

enum class Viewer { closed, video, photo };

const KeyPress leftArrow{.key = Key::leftArrow, .characters = {}, .command = false};
const KeyPress rightArrow{.key = Key::rightArrow, .characters = {}, .command = false};
const KeyPress escape{.key = Key::escape, .characters = {}, .command = false};
const KeyPress space{.key = Key::space, .characters = QStringLiteral(" "), .command = false};

KeyPress typed(const char *characters, bool command = false) {
    return {.key = Key::other, .characters = QString::fromLatin1(characters), .command = command};
}

} // namespace

class KeyMapTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_map.reset();
        m_fixture = std::make_unique<AppStateFixture>();
        m_state = m_fixture->state.get();
        m_map = std::make_unique<KeyMap>();
        m_map->setState(m_state);
    }

    void keys_data() {
        QTest::addColumn<KeyPress>("press");
        QTest::addColumn<Viewer>("viewer");
        QTest::addColumn<bool>("consumed");
        QTest::addColumn<int>("page");
        QTest::addColumn<QString>("full");
        QTest::addColumn<int>("toggles");

        const QString none;
        const QString v1 = QStringLiteral("v1.mp4");
        const QString p1 = QStringLiteral("p1.jpg");
        QTest::newRow("left") << leftArrow << Viewer::closed << true << 2 << none << 0;
        QTest::newRow("right") << rightArrow << Viewer::closed << true << 4 << none << 0;
        QTest::newRow("space") << space << Viewer::closed << false << 3 << none << 0;
        QTest::newRow("left in viewer")
            << leftArrow << Viewer::video << true << 3 << QStringLiteral("v0.mp4") << 0;
        QTest::newRow("right in viewer")
            << rightArrow << Viewer::video << true << 3 << QStringLiteral("v2.mp4") << 0;
        QTest::newRow("space on video") << space << Viewer::video << true << 3 << v1 << 1;
        QTest::newRow("space on photo") << space << Viewer::photo << false << 3 << p1 << 0;
        QTest::newRow("escape in viewer") << escape << Viewer::photo << true << 3 << none << 0;
        QTest::newRow("escape without history") << escape << Viewer::closed << true << 3 << none << 0;
        QTest::newRow("bracket without command") << typed("[") << Viewer::video << false << 3 << v1 << 0;
    }

    void keys() {
        QFETCH(KeyPress, press);
        QFETCH(Viewer, viewer);
        QVERIFY(m_fixture->show(scanResult("/f", 4, 3)));
        if (viewer == Viewer::photo) {
            m_state->setActiveTab(MediaKind::photo);
        }
        m_state->setPage(3);
        if (viewer != Viewer::closed) {
            m_state->openFullItem(m_state->currentMedia()[1]);
        }
        QSignalSpy notifications(&NotificationCentre::defaultCentre(), &NotificationCentre::posted);
        QTEST(m_map->handleKey(press), "consumed");
        QTEST(m_state->page(), "page");
        QTEST(m_state->fullItem() ? m_state->fullItem()->url.lastPathComponent() : QString(), "full");
        QTEST(int(notifications.size()), "toggles");
        if (!notifications.isEmpty()) {
            QCOMPARE(notifications[0][0].toString(), QStringLiteral("MosaTogglePlayback"));
        }
    }

    void fullScreen_data() {
        QTest::addColumn<KeyPress>("press");
        QTest::addColumn<bool>("hasWindow");
        QTest::addColumn<bool>("windowIsFullScreen");
        QTest::addColumn<bool>("before");
        QTest::addColumn<bool>("after");
        QTest::addColumn<int>("toggles");

        QTest::newRow("f enters") << typed("f") << true << false << false << true << 1;
        QTest::newRow("f follows the window") << typed("f") << true << false << true << true << 1;
        QTest::newRow("f with command") << typed("f", true) << true << false << false << true << 1;
        QTest::newRow("f without window") << typed("f") << false << true << false << true << 0;
        QTest::newRow("escape leaves") << escape << true << true << true << false << 1;
        QTest::newRow("escape without window") << escape << false << false << true << false << 0;
    }

    void fullScreen() {
        QFETCH(KeyPress, press);
        QFETCH(bool, hasWindow);
        QFETCH(bool, windowIsFullScreen);
        QFETCH(bool, before);
        m_map->setProperty("hasWindow", hasWindow);
        m_map->setProperty("windowIsFullScreen", windowIsFullScreen);
        m_map->setImmersive(before);
        const QSignalSpy toggles(m_map.get(), &KeyMap::fullScreenToggled);
        QVERIFY(m_map->handleKey(press));
        QTEST(m_map->immersive(), "after");
        QTEST(int(toggles.size()), "toggles");
    }

    void escapeLeavesOneThingAtATime() {
        QVERIFY(m_fixture->show(scanResult("/f", 4, 3)));
        QVERIFY(m_fixture->show(scanResult("/f/g", 2, 2)));
        m_state->openFullItem(m_state->videos()[0]);
        m_map->setImmersive(true);
        QVERIFY(m_map->handleKey(escape));
        QVERIFY(!m_state->fullItem());
        QVERIFY(m_map->immersive());
        QVERIFY(m_map->handleKey(escape));
        QVERIFY(!m_map->immersive());
        QCOMPARE(m_state->folder()->path(), QStringLiteral("/f/g"));
        QVERIFY(m_map->handleKey(escape));
        QCOMPARE(m_state->folder()->path(), QStringLiteral("/f"));
        // While this goes back at once.
        QVERIFY(m_fixture->show(scanResult("/f/g", 2, 2)));
        m_state->openFullItem(m_state->videos()[0]);
        QVERIFY(m_map->handleKey(typed("[", true)));
        QVERIFY(!m_state->fullItem());
        QCOMPARE(m_state->folder()->path(), QStringLiteral("/f"));
    }

    /// A shortcut's letter is the Latin one at the key's place, where the layout has none of its own there.
    void readsLetters_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("scanCode");
        QTest::addColumn<QString>("characters");

        QTest::newRow("f elsewhere on the keyboard") << int(Qt::Key_F) << 29 << QStringLiteral("f");
        QTest::newRow("another letter where f was") << int(Qt::Key_U) << 41 << QStringLiteral("u");
        QTest::newRow("Cyrillic a where f was") << 0x0410 << 41 << QStringLiteral("f");
        QTest::newRow("u with umlaut where [ was") << 0x00DC << 34 << QStringLiteral("\u00fc");
        QTest::newRow("function key") << int(Qt::Key_F1) << 67 << QString();
    }

    void readsLetters() {
        QFETCH(int, key);
        QFETCH(int, scanCode);
        const QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, quint32(scanCode), 0, 0);
        QTEST(KeyPress::fromEvent(event).characters, "characters");
    }

private:
    std::unique_ptr<AppStateFixture> m_fixture;
    AppState *m_state = nullptr;
    std::unique_ptr<KeyMap> m_map;
};

QTEST_MAIN(KeyMapTest)
#include "KeyMapTest.moc"
