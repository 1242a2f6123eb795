// Browsing within the open folder: tab, page, flags, removed videos, order, full-window item.

#include "AppState.h"

#include "NewestFirst.h"

void AppState::keepIf(QList<MediaFile> &files, const QSet<FileURL> &set, bool contained) {
    files.removeIf([&](const MediaFile &file) { return set.contains(file.url) != contained; });
}

void AppState::setActiveTab(MediaKind tab) {
    m_activeTab = tab;
    forgetCurrentMedia();
    Q_EMIT activeTabChanged();
    changeCurrentMedia();
    setPage(0);
}

void AppState::setPage(int page) {
    m_page = page;
    Q_EMIT pageChanged();
}

void AppState::setViewFlaggedOnly(bool on) {
    m_viewFlaggedOnly = on;
    forgetCurrentMedia();
    Q_EMIT viewFlaggedOnlyChanged();
    changeCurrentMedia();
}

void AppState::setArrangeOpen(bool open) {
    m_arrangeOpen = open;
    Q_EMIT arrangeOpenChanged();
}

QList<MediaFile> AppState::currentMedia() const {
    if (!m_currentMedia) {
        m_currentMedia = filteredMedia();
    }
    return *m_currentMedia;
}

QList<MediaFile> AppState::filteredMedia() const {
    QList<MediaFile> media = m_activeTab == MediaKind::photo ? m_photos : m_videos;
    if (m_activeTab == MediaKind::video && !m_hiddenVideos.isEmpty()) {
        keepIf(media, m_hiddenVideos, false);
    }
    if (m_viewFlaggedOnly) {
        keepIf(media, m_flags, true);
    }
    return media;
}

QList<MediaFile> AppState::flaggedItems() const {
    return flaggedItems(snapshot());
}

QList<MediaFile> AppState::flaggedItems(const FolderSnapshot &folder) {
    QList<MediaFile> items = folder.videos + folder.photos;
    keepIf(items, folder.flags, true);
    return items;
}

void AppState::toggleFlag(const MediaFile &file) {
    setFlagged({file.id()}, !m_flags.contains(file.url));
}

void AppState::setFlagged(const QStringList &ids, bool flagged) {
    for (const QString &id : ids) {
        if (flagged) {
            m_flags.insert(FileURL::fromPath(id));
        } else {
            m_flags.remove(FileURL::fromPath(id));
        }
    }
    publishFlags();
}

void AppState::hideVideo(const MediaFile &file) {
    QSet<FileURL> hidden = m_hiddenVideos;
    hidden.insert(file.url);
    assignHiddenVideos(hidden);
    setPage(0);
}

void AppState::resetHiddenVideos() {
    assignHiddenVideos({});
    setPage(0);
}

void AppState::openFullItem(const MediaFile &file) {
    assignFullItem(file);
}

void AppState::closeFullItem() {
    assignFullItem(std::nullopt);
}

void AppState::moveFullItem(int offset) {
    if (!m_fullItem) {
        return;
    }
    const QList<MediaFile> media = currentMedia();
    const qsizetype index = media.indexOf(*m_fullItem);
    const qsizetype target = index + offset;
    if (index >= 0 && target >= 0 && target < media.size()) {
        assignFullItem(media[target]);
    }
}

void AppState::moveVideo(int from, int destination) {
    if (from < 0 || from >= m_videos.size() || destination < 0 || destination > m_videos.size()) {
        return;
    }
    QList<MediaFile> videos = m_videos;
    videos.move(from, destination > from ? destination - 1 : destination);
    assignVideos(videos);
    setPage(0);
}

void AppState::resetVideoOrder() {
    QList<MediaFile> videos = m_videos;
    sortNewestFirst(videos);
    assignVideos(videos);
    setPage(0);
}
