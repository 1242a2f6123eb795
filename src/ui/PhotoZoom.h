#pragma once

#include <QObject>
#include <QPointF>
#include <QtQml/qqmlregistration.h>

/// How a photo is magnified and moved by gestures: fitted to its area, scaled by zoom about its centre, then
/// moved by the offset in points. A gesture reports its changes against its own start; its end makes what was
/// reached the start of the next.
class PhotoZoom : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// Within 1 … 8.
    Q_PROPERTY(double zoom READ zoom NOTIFY zoomChanged)
    Q_PROPERTY(QPointF offset READ offset NOTIFY offsetChanged)

public:
    static constexpr double smallestZoom = 1;
    static constexpr double largestZoom = 8;

    using QObject::QObject;

    double zoom() const { return m_zoom; }
    QPointF offset() const { return m_offset; }

    Q_INVOKABLE void magnify(double magnification);
    Q_INVOKABLE void endMagnification() { m_lastZoom = m_zoom; }
    /// In the area's points; not limited.
    Q_INVOKABLE void drag(QPointF translation);
    Q_INVOKABLE void endDrag() { m_lastOffset = m_offset; }

Q_SIGNALS:
    void zoomChanged();
    void offsetChanged();

private:
    double m_zoom = smallestZoom;
    double m_lastZoom = smallestZoom;
    QPointF m_offset;
    QPointF m_lastOffset;
};
