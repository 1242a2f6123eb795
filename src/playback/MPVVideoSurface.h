#pragma once

#include "MPVPlayerController.h"

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

class MPVOpenGLView;

/// Shows a player's view in a scene. Makes no view of its own: it hosts the one that the controller has,
/// taking it from any surface that hosted it before.
///
/// Sharp on every screen: the video is drawn at the surface's size in device pixels. Takes no pointer events.
class MPVVideoSurface : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(MPVPlayerController *controller READ controller WRITE setController NOTIFY controllerChanged)

public:
    explicit MPVVideoSurface(QQuickItem *parent = nullptr);
    ~MPVVideoSurface() override;

    MPVPlayerController *controller() const { return m_controller; }
    void setController(MPVPlayerController *controller);

    /// Never: what lies below and above gets the clicks.
    bool contains(const QPointF &point) const override;

Q_SIGNALS:
    void controllerChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

private:
    void showContents();
    bool hostsView() const;
    void detach();
    void updateBackingSize();

    QPointer<MPVPlayerController> m_controller;
    QPointer<MPVOpenGLView> m_view;
    /// The scene shows the view, and is drawn in a thread of its own.
    bool m_shownByOtherThread = false;
};
