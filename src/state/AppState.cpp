// Opening, scanning and leaving folders; the properties' assignments.

#include "AppState.h"

#include "FolderChooser.h"
#include "Preferences.h"
#include "WhenFinished.h"

namespace {

const auto lastFolderKey = QStringLiteral("MosaLastFolder");

template <typename Value>
QVariant variantOf(const std::optional<Value> &value) {
    return value ? QVariant::fromValue(*value) : QVariant();
}

QString scanningText(const FileURL &folder) {
    return QStringLiteral("Scanning %1\u2026").arg(folder.lastPathComponent());
}

} // namespace

AppState::AppState(Services services, QObject *parent) : QObject(parent), m_services(std::move(services)) {}

AppState::~AppState() {
    abandonScan();
    for (QFuture<void> &batch : m_batches) {
        batch.cancel();
    }
}

QVariant AppState::folderVariant() const {
    return variantOf(m_folder);
}

QVariant AppState::fullItemVariant() const {
    return variantOf(m_fullItem);
}

QVariant AppState::errorMessageVariant() const {
    return variantOf(m_errorMessage);
}

QVariant AppState::statusMessageVariant() const {
    return variantOf(m_statusMessage);
}

QVariant AppState::operationProgressVariant() const {
    return variantOf(m_operationProgress);
}

void AppState::assignLists(const FileURL &folder, const QList<MediaFile> &videos,
                           const QList<MediaFile> &photos, const QList<FolderCard> &folders) {
    m_folder = folder;
    Q_EMIT folderChanged();
    assignVideos(videos);
    assignPhotos(photos);
    m_folders = folders;
    Q_EMIT foldersChanged();
}

void AppState::assignVideos(const QList<MediaFile> &videos) {
    m_videos = videos;
    forgetCurrentMedia();
    Q_EMIT videosChanged();
    changeCurrentMedia();
}

void AppState::assignPhotos(const QList<MediaFile> &photos) {
    m_photos = photos;
    forgetCurrentMedia();
    Q_EMIT photosChanged();
    changeCurrentMedia();
}

void AppState::assignFlags(const QSet<FileURL> &flags) {
    m_flags = flags;
    publishFlags();
}

void AppState::publishFlags() {
    forgetCurrentMedia();
    Q_EMIT flagsChanged();
    if (m_viewFlaggedOnly) {
        changeCurrentMedia();
    }
}

void AppState::assignHiddenVideos(const QSet<FileURL> &hidden) {
    m_hiddenVideos = hidden;
    forgetCurrentMedia();
    Q_EMIT hiddenVideosChanged();
    changeCurrentMedia();
}

void AppState::assignFullItem(const std::optional<MediaFile> &item) {
    m_fullItem = item;
    Q_EMIT fullItemChanged();
}

void AppState::assignIsScanning(bool scanning) {
    m_isScanning = scanning;
    Q_EMIT isScanningChanged();
}

void AppState::assignErrorMessage(const std::optional<QString> &message) {
    m_errorMessage = message;
    Q_EMIT errorMessageChanged();
}

void AppState::assignStatusMessage(const std::optional<QString> &message) {
    m_statusMessage = message;
    Q_EMIT statusMessageChanged();
}

void AppState::assignOperationProgress(const std::optional<double> &progress) {
    m_operationProgress = progress;
    Q_EMIT operationProgressChanged();
}

void AppState::forgetCurrentMedia() {
    m_currentMedia.reset();
    ++m_revision;
}

void AppState::changeCurrentMedia() {
    forgetCurrentMedia();
    Q_EMIT currentMediaChanged();
}

void AppState::dismissError() {
    assignErrorMessage(std::nullopt);
}

void AppState::chooseFolder() {
    if (m_asking || m_services.chooser == nullptr) {
        return;
    }
    m_asking = true;
    const auto answer =
        m_services.chooser->choose(QStringLiteral("Open a folder in Mosa"), QStringLiteral("Open"));
    whenFinished(this, answer, [this](const QFuture<std::optional<FileURL>> &finished) {
        m_asking = false;
        const auto chosen = finishedResultOr(finished, std::nullopt);
        if (chosen) {
            openFolder(*chosen, true);
        }
    });
}

// Everything that shows happens at once; only the question whether the URL is a folder has to wait for the
// disk, which may take for ever. When it is none, the opening goes on with the folder that contains it.
void AppState::openFolder(const FileURL &url, bool rememberHistory) {
    if (url.isEmpty()) {
        return;
    }
    if (rememberHistory && m_folder) {
        m_history.append(snapshot());
        Q_EMIT historyChanged();
    }
    abandonScan();
    assignIsScanning(true);
    assignErrorMessage(std::nullopt);
    assignStatusMessage(scanningText(url));
    if (url.hasDirectoryPath()) {
        scan(url);
        return;
    }
    whenFinished(this, m_services.isDirectory(url),
                 [this, url, opening = m_opening](const QFuture<bool> &answer) {
                     if (opening != m_opening) {
                         return;
                     }
                     if (finishedResultOr(answer, false)) {
                         scan(url);
                         return;
                     }
                     const FileURL parent = url.deletingLastPathComponent();
                     assignStatusMessage(scanningText(parent));
                     scan(parent);
                 });
}

FolderSnapshot AppState::snapshot() const {
    return {.folder = m_folder.value_or(FileURL()),
            .videos = m_videos,
            .photos = m_photos,
            .folders = m_folders,
            .activeTab = m_activeTab,
            .page = m_page,
            .flags = m_flags,
            .hiddenVideos = m_hiddenVideos};
}

void AppState::abandonScan() {
    ++m_opening;
    m_scanTask.cancel();
}

void AppState::scan(const FileURL &folder) {
    m_scanTask = m_services.scan(folder);
    whenFinished(this, m_scanTask, [this, opening = m_opening](const QFuture<ScanResult> &finished) {
        if (opening == m_opening) {
            finishScan(finished);
        }
    });
}

void AppState::finishScan(const QFuture<ScanResult> &scan) {
    try {
        if (const auto result = finishedResult(scan)) {
            apply(*result);
        }
    } catch (const std::exception &error) {
        assignIsScanning(false);
        assignStatusMessage(std::nullopt);
        assignErrorMessage(QString::fromUtf8(error.what()));
    }
}

void AppState::apply(const ScanResult &result) {
    assignLists(result.folder, result.videos, result.photos, result.folders);
    assignHiddenVideos({});
    assignFlags({});
    setViewFlaggedOnly(false);
    assignFullItem(std::nullopt);
    setPage(0);
    if (m_videos.isEmpty() && !m_photos.isEmpty()) {
        setActiveTab(MediaKind::photo);
    } else if (m_photos.isEmpty() && !m_videos.isEmpty()) {
        setActiveTab(MediaKind::video);
    }
    assignIsScanning(false);
    assignErrorMessage(std::nullopt);
    assignStatusMessage(std::nullopt);
    rememberFolder(result.folder);
}

void AppState::navigateBack() {
    if (m_history.isEmpty()) {
        return;
    }
    const FolderSnapshot last = m_history.takeLast();
    Q_EMIT historyChanged();
    abandonScan();
    assignLists(last.folder, last.videos, last.photos, last.folders);
    setActiveTab(last.activeTab);
    setPage(last.page);
    assignFlags(last.flags);
    assignHiddenVideos(last.hiddenVideos);
    setViewFlaggedOnly(false);
    assignFullItem(std::nullopt);
    assignIsScanning(false);
    assignErrorMessage(std::nullopt);
    assignStatusMessage(std::nullopt);
    rememberFolder(last.folder);
}

std::optional<FileURL> AppState::lastFolder() const {
    const std::optional<QString> path =
        m_services.preferences != nullptr ? m_services.preferences->string(lastFolderKey) : std::nullopt;
    return path && !path->isEmpty() ? std::optional(FileURL::fromPath(*path)) : std::nullopt;
}

void AppState::rememberFolder(const FileURL &folder) {
    if (m_services.preferences != nullptr) {
        m_services.preferences->setString(lastFolderKey, folder.path());
    }
}
