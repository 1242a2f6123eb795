#include "MainWindow.h"

#include "AppState.h"

MainWindow::MainWindow(AppState &state) {
    setTitle(QStringLiteral("Mosa"));
    setMinimumSize({920, 620});
    setResizeMode(QQuickView::SizeRootObjectToView);
    engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    setInitialProperties({{QStringLiteral("state"), QVariant::fromValue(&state)}});
    setSource(QUrl(QStringLiteral("qrc:/qt/qml/Mosa/UI/ContentView.qml")));
}
