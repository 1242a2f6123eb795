#include "MediaPager.h"

#include <algorithm>

namespace {

constexpr int toolbarHeight = 48;
constexpr int toolbarAndStripHeight = 128;
/// The grid's padding, both sides together.
constexpr double gridPadding = 12;

} // namespace

MediaPager::MediaPager(QObject *parent) : QObject(parent) {}

void MediaPager::setState(AppState *state) {
    if (!m_state.replace(state, this)) {
        return;
    }
    if (m_state) {
        connect(m_state, &AppState::currentMediaChanged, this, &MediaPager::scheduleMediaUpdate);
        connect(m_state, &AppState::foldersChanged, this, &MediaPager::scheduleMediaUpdate);
        connect(m_state, &AppState::pageChanged, this, &MediaPager::updateShownPage);
    }
    Q_EMIT stateChanged();
    updateMedia();
}

void MediaPager::setWidth(double width) {
    if (m_size.width() != width) {
        m_size.setWidth(width);
        Q_EMIT sizeChanged();
        updatePages();
    }
}

void MediaPager::setHeight(double height) {
    if (m_size.height() != height) {
        m_size.setHeight(height);
        Q_EMIT sizeChanged();
        updatePages();
    }
}

void MediaPager::setImmersive(bool immersive) {
    if (m_immersive != immersive) {
        m_immersive = immersive;
        Q_EMIT immersiveChanged();
        updatePages();
    }
}

QStringList MediaPager::pageItemIds() const {
    QStringList ids;
    ids.reserve(m_pageItems.items().size());
    for (const MediaFile &item : m_pageItems.items()) {
        ids.append(item.id());
    }
    return ids;
}

void MediaPager::componentComplete() {
    m_complete = true;
    updateMedia();
}

void MediaPager::scheduleMediaUpdate() {
    if (!m_mediaUpdateScheduled) {
        m_mediaUpdateScheduled = true;
        QMetaObject::invokeMethod(this, &MediaPager::updateMedia, Qt::QueuedConnection);
    }
}

void MediaPager::updateMedia() {
    m_mediaUpdateScheduled = false;
    if (!m_complete) {
        return;
    }
    const bool wasEmpty = m_media.isEmpty();
    m_media = m_state ? m_state->currentMedia() : QList<MediaFile>();
    m_aspectRatios.resize(size_t(m_media.size()));
    std::transform(m_media.cbegin(), m_media.cend(), m_aspectRatios.begin(),
                   [](const MediaFile &file) { return file.aspectRatio; });
    updatePages();
    if (wasEmpty != m_media.isEmpty()) {
        Q_EMIT isEmptyChanged();
    }
}

void MediaPager::updateReservedHeight() {
    const bool strip = m_state && !m_state->folders().isEmpty();
    const int reserved = m_immersive ? 0 : strip ? toolbarAndStripHeight : toolbarHeight;
    if (m_reservedHeight != reserved) {
        m_reservedHeight = reserved;
        Q_EMIT reservedHeightChanged();
    }
}

void MediaPager::updatePages() {
    if (!m_complete || m_mediaUpdateScheduled) {
        return;
    }
    updateReservedHeight();
    const QSizeF grid(std::max(m_size.width() - gridPadding, 1.0),
                      std::max(m_size.height() - m_reservedHeight - gridPadding, 1.0));
    m_ranges = MediaGridSizing::pageRanges(grid, m_aspectRatios);
    const int count = std::max(int(m_ranges.size()), 1);
    if (m_pageCount != count) {
        m_pageCount = count;
        Q_EMIT pageCountChanged();
    }
    updateShownPage();
}

QList<MediaFile> MediaPager::itemsOfPage(int page) const {
    if (page < 0 || page >= int(m_ranges.size())) {
        return {};
    }
    const MediaGridSizing::Range range = m_ranges[size_t(page)];
    return m_media.sliced(range.begin, range.end - range.begin);
}

void MediaPager::updateShownPage() {
    if (!m_complete || m_mediaUpdateScheduled || !m_state) {
        return;
    }
    const int shown = std::clamp(m_state->page(), 0, m_pageCount - 1);
    const QList<MediaFile> items = itemsOfPage(shown);
    if (items != m_pageItems.items()) {
        m_pageItems.setItems(items);
        Q_EMIT pageItemIdsChanged();
    }
    setShownPage(shown);
}

void MediaPager::setShownPage(int page) {
    const bool firstAppearance = !std::exchange(m_appeared, true);
    if (m_shownPage == page) {
        return;
    }
    m_shownPage = page;
    Q_EMIT shownPageChanged();
    if (!firstAppearance && m_state->page() != page) {
        m_state->setPage(page);
    }
}
