#pragma once

#include "MediaPager.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

/// Has the thumbnails of the next and the previous page prepared while the program is idle, so that turning a
/// page shows pictures at once. Withdrawn when the pages change and when the object goes away.
class NeighbourPrefetch : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(MediaPager *pager READ pager WRITE setPager NOTIFY pagerChanged REQUIRED)

public:
    using QObject::QObject;
    ~NeighbourPrefetch() override;

    MediaPager *pager() const { return m_pager; }
    void setPager(MediaPager *pager);

Q_SIGNALS:
    void pagerChanged();

private:
    void update();

    QPointer<MediaPager> m_pager;
};
