#pragma once

#include <QQmlEngine>
#include <QQuickView>

class AppState;

/// The program's one window and the QML scene in it.
class MainWindow : public QQuickView {
    Q_OBJECT

public:
    explicit MainWindow(AppState &state);
};
