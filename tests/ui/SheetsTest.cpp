#include <QAccessible>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>
#include <QTest>

#include "../state/AppStateFixture.h"
#include "SheetAlertPresenter.h"
#include "SheetFolderChooser.h"

Q_IMPORT_QML_PLUGIN(Mosa_StatePlugin)
Q_IMPORT_QML_PLUGIN(Mosa_PlaybackPlugin)
Q_IMPORT_QML_PLUGIN(Mosa_UIPlugin)

class SheetsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_fixture = std::make_unique<AppStateFixture>();
        QVERIFY(m_fixture->show(scanResult("/f", 40, 1)));
        m_alerts = std::make_unique<SheetAlertPresenter>();
        m_chooser = std::make_unique<SheetFolderChooser>();
        m_view = std::make_unique<QQuickView>();
        m_view->engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
        m_view->setResizeMode(QQuickView::SizeRootObjectToView);
        m_view->setColor(QColor(40, 44, 52));
        m_view->setInitialProperties({{QStringLiteral("state"), QVariant::fromValue(m_fixture->state.get())},
                                      {QStringLiteral("alerts"), QVariant::fromValue(m_alerts.get())},
                                      {QStringLiteral("chooser"), QVariant::fromValue(m_chooser.get())}});
        m_view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Mosa/UI/SheetHost.qml")));
        QCOMPARE(m_view->status(), QQuickView::Ready);
        m_view->resize(920, 620);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    }

    void cleanup() {
        m_view.reset();
        m_chooser.reset();
        m_alerts.reset();
        m_fixture.reset();
    }

    void answersAnAlertByKey_data() {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<int>("button");

        QTest::newRow("Return") << QList<int>{Qt::Key_Return} << 0;
        QTest::newRow("Escape") << QList<int>{Qt::Key_Escape} << 1;
        QTest::newRow("Return on the other button") << QList<int>{Qt::Key_Tab, Qt::Key_Return} << 1;
        QTest::newRow("once round") << QList<int>{Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space} << 0;
    }

    void answersAnAlertByKey() {
        QFETCH(QList<int>, keys);
        QFETCH(int, button);
        const auto answer = m_alerts->present({.messageText = QStringLiteral("Really?"),
                                               .informativeText = {},
                                               .buttons = {QStringLiteral("Yes"), QStringLiteral("No")},
                                               .destructive = true});
        for (const int key : keys) {
            QVERIFY(!answer.isFinished());
            QTest::keyClick(m_view.get(), Qt::Key(key));
        }
        QVERIFY(answer.isFinished());
        QCOMPARE(answer.result(), button);
        QVERIFY(!m_alerts->active());
    }

    void keepsTheFocusInside() {
        const QFuture<std::optional<FileURL>> answer =
            m_chooser->choose(QStringLiteral("Copy flagged files to"), QStringLiteral("Copy Here"));
        const QQuickItem *sheet = find(QStringLiteral("Copy flagged files to"));
        QVERIFY(sheet != nullptr);
        QQuickItem *first = m_view->activeFocusItem();
        QSet<QQuickItem *> reached;
        for (int i = 0; i < 40; ++i) {
            QTest::keyClick(m_view.get(), i < 20 ? Qt::Key_Tab : Qt::Key_Backtab);
            QQuickItem *item = m_view->activeFocusItem();
            QVERIFY(item != nullptr && sheet->isAncestorOf(item));
            reached.insert(item);
        }
        // Path, Up, places, list, New Folder, Cancel, Copy Here.
        QCOMPARE(reached.size(), 7);
        QVERIFY(reached.contains(first));
    }

    void choosesATypedFolder() {
        const QTemporaryDir directory;
        QVERIFY(QDir(directory.path()).mkpath(QStringLiteral("Holiday/Beach")));
        const auto answer =
            m_chooser->choose(QStringLiteral("Open a folder in Mosa"), QStringLiteral("Open"));
        m_chooser->browser()->openPath(directory.path());
        QTRY_COMPARE(m_chooser->browser()->rowCount(), 1);
        // The rest of the name comes by itself, Tab takes it.
        QTest::keyClick(m_view.get(), 'h');
        QQuickItem *field = find(QStringLiteral("Folder path"));
        QCOMPARE(field->property("selectedText").toString(), QStringLiteral("oliday"));
        QTest::keyClick(m_view.get(), Qt::Key_Tab);
        QTRY_COMPARE(m_chooser->browser()->rowCount(), 1);
        QTest::keyClick(m_view.get(), Qt::Key_Down);
        QCOMPARE(field->property("text").toString(), directory.filePath(QStringLiteral("Holiday/Beach")));
        QTest::keyClick(m_view.get(), Qt::Key_Return);
        QTRY_VERIFY(answer.isFinished());
        QCOMPARE(answer.result()->path(), directory.filePath(QStringLiteral("Holiday/Beach")));
        QVERIFY(!m_chooser->active());
    }

    void makesAFolderToCopyInto() {
        const QTemporaryDir directory;
        const auto answer =
            m_chooser->choose(QStringLiteral("Copy flagged files to"), QStringLiteral("Copy Here"));
        m_chooser->browser()->openPath(directory.path());
        click(QStringLiteral("New Folder"));
        QTest::keyClick(m_view.get(), Qt::Key_X);
        QTest::keyClick(m_view.get(), Qt::Key_Return);
        QTRY_VERIFY(QDir(directory.filePath(QStringLiteral("x"))).exists());
        QTRY_COMPARE(m_chooser->browser()->folderPath(), directory.filePath(QStringLiteral("x")));
        click(QStringLiteral("Copy Here"));
        QTRY_VERIFY(answer.isFinished());
        QCOMPARE(answer.result()->path(), directory.filePath(QStringLiteral("x")));
    }

    void arrangesByDragging() {
        AppState &state = *m_fixture->state;
        state.setArrangeOpen(true);
        state.setPage(1);
        QQuickItem *list = find(QStringLiteral("Videos"));
        QQuickItem *row = find(QStringLiteral("v2.mp4"), list);
        const QPoint from = row->mapToScene(QPointF(200, 17)).toPoint();
        QTest::mousePress(m_view.get(), Qt::LeftButton, {}, from);
        for (int y = 0; y <= 3 * 34; y += 6) {
            QTest::mouseMove(m_view.get(), from + QPoint(0, y));
            QTest::qWait(1);
        }
        QTest::mouseMove(m_view.get(), from + QPoint(0, 3 * 34 + 4));
        QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, from + QPoint(0, 3 * 34 + 4));
        QTRY_COMPARE(state.videos()[5].id(), QStringLiteral("/f/v2.mp4"));
        QCOMPARE(state.page(), 0);
        // Held at the lower edge, the list comes along.
        row = find(QStringLiteral("v3.mp4"), list);
        QTRY_COMPARE(row->y(), 2.0 * 34);
        QTest::mousePress(m_view.get(), Qt::LeftButton, {}, from);
        QTest::mouseMove(m_view.get(), from + QPoint(0, 20));
        const QPoint edge = list->mapToScene(QPointF(200, list->height() - 2)).toPoint();
        QTest::mouseMove(m_view.get(), edge);
        const double end = list->property("contentHeight").toDouble() - list->height();
        QTRY_VERIFY(list->property("contentY").toDouble() >= end - 1);
        QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, edge);
        QTRY_COMPARE(state.videos()[39].id(), QStringLiteral("/f/v3.mp4"));
    }

    void arrangesWithArrowKeys() {
        AppState &state = *m_fixture->state;
        state.setArrangeOpen(true);
        QTest::keyClick(m_view.get(), Qt::Key_Down);
        QTest::keyClick(m_view.get(), Qt::Key_Down);
        QTest::keyClick(m_view.get(), Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(state.videos()[1].id(), QStringLiteral("/f/v2.mp4"));
        // The row that moved stays the current one.
        QTest::keyClick(m_view.get(), Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(state.videos()[0].id(), QStringLiteral("/f/v2.mp4"));
    }

private:
    /// By the name on the accessibility bus.
    QQuickItem *find(const QString &name, const QQuickItem *under = nullptr) const {
        const QList<QQuickItem *> children = (under == nullptr ? m_view->contentItem() : under)->childItems();
        for (QQuickItem *child : children) {
            if (!child->isVisible()) {
                continue;
            }
            QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(child);
            if (interface != nullptr && interface->text(QAccessible::Name) == name) {
                return child;
            }
            if (QQuickItem *found = find(name, child)) {
                return found;
            }
        }
        return nullptr;
    }

    void click(const QString &name) const {
        const QQuickItem *item = find(name);
        QVERIFY2(item != nullptr, qPrintable(name));
        const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, centre.toPoint());
    }

    std::unique_ptr<AppStateFixture> m_fixture;
    std::unique_ptr<SheetAlertPresenter> m_alerts;
    std::unique_ptr<SheetFolderChooser> m_chooser;
    std::unique_ptr<QQuickView> m_view;
};

QTEST_MAIN(SheetsTest)
#include "SheetsTest.moc"
