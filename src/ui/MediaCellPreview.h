#pragma once

#include "MPVPlayerController.h"
#include "MediaFile.h"
#include "StatePointer.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <memory>

/// The life of one grid cell's inline preview, from the pointer's entry or a click to its end.
///
/// The cell reports what happens to it (entered(), left(), clicked(), doubleClicked(), disappeared()) and
/// shows the controller's video while there is one. At most one cell of the program has a controller: a cell
/// claims the preview before it starts its own, and every other cell then ends its. A preview also ends when
/// any item is opened full-window and when this object goes.
///
/// Main thread.
class MediaCellPreview : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(MediaFile item READ item WRITE setItem NOTIFY itemChanged)
    Q_PROPERTY(AppState *state READ state WRITE setState NOTIFY stateChanged)
    /// The pointer is over the cell, or left it less than exitDelay ago.
    Q_PROPERTY(bool hovering READ hovering NOTIFY hoveringChanged)
    /// Exists exactly while the cell plays its preview; otherwise null.
    Q_PROPERTY(MPVPlayerController *controller READ controller NOTIFY controllerChanged)

public:
    explicit MediaCellPreview(QObject *parent = nullptr);
    ~MediaCellPreview() override;

    const MediaFile &item() const { return m_item; }
    /// Nothing of what concerns another file goes on under a new item.
    void setItem(const MediaFile &item);
    AppState *state() const { return m_state; }
    void setState(AppState *state);
    bool hovering() const { return m_hovering; }
    MPVPlayerController *controller() const { return m_controller.get(); }
    void setExitDelay(std::chrono::milliseconds delay) { m_exitTimer.setInterval(delay); }

    Q_INVOKABLE void entered();
    Q_INVOKABLE void left();
    /// Starts the preview if it does not run, and makes it audible. Does nothing for a photo.
    Q_INVOKABLE void clicked();
    /// Ends the preview and opens the item full-window.
    Q_INVOKABLE void doubleClicked();
    Q_INVOKABLE void disappeared();

Q_SIGNALS:
    void itemChanged();
    /// The item is another file than the one before.
    void fileChanged();
    void stateChanged();
    void hoveringChanged();
    void controllerChanged();

private:
    struct DeleteLater {
        void operator()(QObject *object) const { object->deleteLater(); }
    };

    void startPreview();
    void endPreview();
    void endHover();
    void setHovering(bool hovering);
    void onNotification(const QString &name, const QVariant &object);
    void onFullItemChanged();

    MediaFile m_item;
    StatePointer m_state;
    bool m_hovering = false;
    std::unique_ptr<MPVPlayerController, DeleteLater> m_controller;
    QTimer m_exitTimer;
};
