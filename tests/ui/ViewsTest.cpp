// Runs the Qt Quick tests in views/ against the real views.

#include <QQmlEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuickTest>

Q_IMPORT_QML_PLUGIN(Mosa_StatePlugin)
Q_IMPORT_QML_PLUGIN(Mosa_PlaybackPlugin)
Q_IMPORT_QML_PLUGIN(Mosa_UIPlugin)

class Setup : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine *engine) { engine->addImportPath(QStringLiteral("qrc:/qt/qml")); }
};

QUICK_TEST_MAIN_WITH_SETUP(views, Setup)

#include "ViewsTest.moc"
