#include "PhotoZoom.h"

#include <algorithm>

void PhotoZoom::magnify(double magnification) {
    const double zoom = std::clamp(m_lastZoom * magnification, smallestZoom, largestZoom);
    if (m_zoom != zoom) {
        m_zoom = zoom;
        Q_EMIT zoomChanged();
    }
}

void PhotoZoom::drag(QPointF translation) {
    const QPointF offset = m_lastOffset + translation;
    if (m_offset != offset) {
        m_offset = offset;
        Q_EMIT offsetChanged();
    }
}
