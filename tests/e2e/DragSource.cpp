// A window in the screen's corner from which the given addresses can be dragged. Says how each drag ended.

#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QRasterWindow>
#include <QUrl>

#include <cstdio>

namespace {

class Source : public QRasterWindow {
protected:
    void mouseMoveEvent(QMouseEvent *) override {
        auto *data = new QMimeData;
        const QStringList addresses = QGuiApplication::arguments().mid(1);
        data->setUrls(QUrl::fromStringList(addresses));
        auto *drag = new QDrag(this);
        drag->setMimeData(data);
        // As a file manager does: to move is what it would rather do.
        const Qt::DropAction action = drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
        std::puts(action == Qt::CopyAction ? "copied" : action == Qt::MoveAction ? "moved" : "refused");
        std::fflush(stdout);
    }
};

} // namespace

int main(int argc, char *argv[]) {
    const QGuiApplication application(argc, argv);
    Source source;
    source.setTitle(QStringLiteral("drag source"));
    source.setFlags(Qt::FramelessWindowHint);
    source.setGeometry(0, 0, 60, 40);
    source.show();
    return QGuiApplication::exec();
}
