// The least that a Qt Quick program can be: one window with one colour.

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>
#include <QQuickWindow>

int main(int argc, char *argv[]) {
    const QGuiApplication application(argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QQuickView view;
    QQmlComponent component(view.engine());
    component.setData("import QtQuick\nRectangle { color: '#09090a' }", QUrl());
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setContent(QUrl(), &component, component.create());
    view.resize(1440, 900);
    view.show();
    return QGuiApplication::exec();
}
