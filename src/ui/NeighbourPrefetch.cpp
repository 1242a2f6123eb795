#include "NeighbourPrefetch.h"

#include "ThumbnailImage.h"
#include "ThumbnailService.h"

NeighbourPrefetch::~NeighbourPrefetch() {
    ThumbnailService::shared().prefetch({}, ThumbnailImage::requestedSize);
}

void NeighbourPrefetch::setPager(MediaPager *pager) {
    if (m_pager == pager) {
        return;
    }
    if (m_pager) {
        m_pager->disconnect(this);
    }
    m_pager = pager;
    if (m_pager) {
        connect(m_pager, &MediaPager::shownPageChanged, this, &NeighbourPrefetch::update);
        connect(m_pager, &MediaPager::pageItemIdsChanged, this, &NeighbourPrefetch::update);
    }
    Q_EMIT pagerChanged();
    update();
}

void NeighbourPrefetch::update() {
    QList<MediaFile> files;
    if (m_pager) {
        // People mostly go on.
        files =
            m_pager->itemsOfPage(m_pager->shownPage() + 1) + m_pager->itemsOfPage(m_pager->shownPage() - 1);
    }
    ThumbnailService::shared().prefetch(files, ThumbnailImage::requestedSize);
}
