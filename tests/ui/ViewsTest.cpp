// Runs the Qt Quick tests in views/ against the real views.

#include <QQmlContext>
#include <QQmlEngine>
#include <QTest>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuickTest>

#include "../state/AppStateFixture.h"

Q_IMPORT_QML_PLUGIN(Mosa_StatePlugin)
Q_IMPORT_QML_PLUGIN(Mosa_PlaybackPlugin)
Q_IMPORT_QML_PLUGIN(Mosa_UIPlugin)

/// A state for the views to show, and the answers to what it asks of the world.
class World : public QObject {
    Q_OBJECT
    Q_PROPERTY(AppState *state READ state NOTIFY stateChanged)

public:
    AppState *state() const { return m_fixture->state.get(); }

    Q_INVOKABLE bool show(const QString &folder, int videos, int photos, int cards) {
        ScanResult result = scanResult(folder.toUtf8(), videos, photos);
        for (int i = 0; i < cards; ++i) {
            const QByteArray path = folder.toUtf8() + "/card" + QByteArray::number(i);
            result.folders.append({FileURL::directory(path), QStringLiteral("card%1").arg(i), 12, {}});
        }
        return m_fixture->show(result);
    }
    /// Begins a scan without an end.
    Q_INVOKABLE void startScan(const QString &folder) {
        m_fixture->state->openFolder(FileURL::directory(folder.toUtf8()), true);
    }
    Q_INVOKABLE void failScan(const QString &message) {
        m_fixture->scans.back().fail(ScanFailure(message.toUtf8()));
    }
    Q_INVOKABLE int chooserCount() const { return int(m_fixture->chooser.shown.size()); }

Q_SIGNALS:
    void stateChanged();

private:
    std::unique_ptr<AppStateFixture> m_fixture = std::make_unique<AppStateFixture>();
};

class Setup : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine *engine) {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        m_world = std::make_unique<World>();
        engine->rootContext()->setContextProperty(QStringLiteral("world"), m_world.get());
    }
    void cleanupTestCase() { m_world.reset(); }

private:
    std::unique_ptr<World> m_world;
};

QUICK_TEST_MAIN_WITH_SETUP(views, Setup)

#include "ViewsTest.moc"
