#pragma once

#include "BatchProgress.h"
#include "FileOperation.h"
#include "FileOperations.h"
#include "FolderCard.h"
#include "FolderSnapshot.h"
#include "MediaFile.h"
#include "ScanResult.h"

#include <QFuture>
#include <QObject>
#include <QSet>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

class AlertPresenter;
class FolderChooser;
class Preferences;

/// Everything the browser window shows, in one observable object. Main thread only; one for the program's
/// run.
///
/// Optional values reach QML as undefined when absent.
class AppState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one for the program's run, made by the application")
    Q_PROPERTY(QVariant folder READ folderVariant NOTIFY folderChanged)
    Q_PROPERTY(QList<MediaFile> videos READ videos NOTIFY videosChanged)
    Q_PROPERTY(QList<MediaFile> photos READ photos NOTIFY photosChanged)
    /// Lengths of videos and photos, which QML would otherwise copy to count.
    Q_PROPERTY(int videoCount READ videoCount NOTIFY videosChanged)
    Q_PROPERTY(int photoCount READ photoCount NOTIFY photosChanged)
    Q_PROPERTY(QList<FolderCard> folders READ folders NOTIFY foldersChanged)
    Q_PROPERTY(MediaKinds::MediaKind activeTab READ activeTab WRITE setActiveTab NOTIFY activeTabChanged)
    Q_PROPERTY(int page READ page WRITE setPage NOTIFY pageChanged)
    Q_PROPERTY(int flagCount READ flagCount NOTIFY flagsChanged)
    Q_PROPERTY(int hiddenVideoCount READ hiddenVideoCount NOTIFY hiddenVideosChanged)
    Q_PROPERTY(
        bool viewFlaggedOnly READ viewFlaggedOnly WRITE setViewFlaggedOnly NOTIFY viewFlaggedOnlyChanged)
    Q_PROPERTY(QVariant fullItem READ fullItemVariant NOTIFY fullItemChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    Q_PROPERTY(QVariant errorMessage READ errorMessageVariant NOTIFY errorMessageChanged)
    Q_PROPERTY(QVariant statusMessage READ statusMessageVariant NOTIFY statusMessageChanged)
    Q_PROPERTY(QVariant operationProgress READ operationProgressVariant NOTIFY operationProgressChanged)
    Q_PROPERTY(bool arrangeOpen READ arrangeOpen WRITE setArrangeOpen NOTIFY arrangeOpenChanged)
    Q_PROPERTY(bool canNavigateBack READ canNavigateBack NOTIFY historyChanged)

public:
    /// What the state needs of the world, injected so that its logic runs without one.
    struct Services {
        /// A superseded scan's future is cancelled.
        std::function<QFuture<ScanResult>(const FileURL &)> scan;
        /// Whether the URL is a folder, asked off the main thread; a failed read answers false.
        std::function<QFuture<bool>(const FileURL &)> isDirectory;
        std::function<QFuture<QList<FileURL>>(const QList<FileURL> &, const FileOperations::Progress &)>
            trash;
        std::function<QFuture<FileTransferResult>(const QList<FileURL> &, const FileURL &, FileOperationKind,
                                                  const FileOperations::Progress &)>
            transfer;
        FolderChooser *chooser = nullptr;
        AlertPresenter *alerts = nullptr;
        Preferences *preferences = nullptr;
    };

    explicit AppState(Services services, QObject *parent = nullptr);
    ~AppState() override;

    const std::optional<FileURL> &folder() const { return m_folder; }
    const QList<MediaFile> &videos() const { return m_videos; }
    const QList<MediaFile> &photos() const { return m_photos; }
    int videoCount() const { return int(m_videos.size()); }
    int photoCount() const { return int(m_photos.size()); }
    const QList<FolderCard> &folders() const { return m_folders; }
    MediaKind activeTab() const { return m_activeTab; }
    void setActiveTab(MediaKind tab);
    int page() const { return m_page; }
    void setPage(int page);
    const QSet<FileURL> &flags() const { return m_flags; }
    int flagCount() const { return int(m_flags.size()); }
    const QSet<FileURL> &hiddenVideos() const { return m_hiddenVideos; }
    int hiddenVideoCount() const { return int(m_hiddenVideos.size()); }
    bool viewFlaggedOnly() const { return m_viewFlaggedOnly; }
    void setViewFlaggedOnly(bool on);
    const std::optional<MediaFile> &fullItem() const { return m_fullItem; }
    bool isScanning() const { return m_isScanning; }
    const std::optional<QString> &errorMessage() const { return m_errorMessage; }
    const std::optional<QString> &statusMessage() const { return m_statusMessage; }
    const std::optional<double> &operationProgress() const { return m_operationProgress; }
    bool arrangeOpen() const { return m_arrangeOpen; }
    void setArrangeOpen(bool open);
    bool canNavigateBack() const { return !m_history.isEmpty(); }
    /// The folder remembered from the last scan or going back, in this run or an earlier one.
    std::optional<FileURL> lastFolder() const;

    /// The list that the grid pages through: the active tab's, without removed videos, and only the flagged
    /// ones while viewFlaggedOnly.
    QList<MediaFile> currentMedia() const;
    /// All flagged videos, then all flagged photos, whatever the tab shows.
    QList<MediaFile> flaggedItems() const;

    Q_INVOKABLE void chooseFolder();
    Q_INVOKABLE void openFolder(const FileURL &url, bool rememberHistory);
    Q_INVOKABLE void navigateBack();

    Q_INVOKABLE bool isFlagged(const QString &id) const { return m_flags.contains(FileURL::fromPath(id)); }
    Q_INVOKABLE void toggleFlag(const MediaFile &file);
    Q_INVOKABLE void setFlagged(const QStringList &ids, bool flagged);
    Q_INVOKABLE void hideVideo(const MediaFile &file);
    Q_INVOKABLE void resetHiddenVideos();
    Q_INVOKABLE void openFullItem(const MediaFile &file);
    Q_INVOKABLE void closeFullItem();
    Q_INVOKABLE void moveFullItem(int offset);
    /// Moves one video to a destination that counts positions before the removal, then shows the first page.
    Q_INVOKABLE void moveVideo(int from, int destination);
    Q_INVOKABLE void resetVideoOrder();
    Q_INVOKABLE void dismissError();

    Q_INVOKABLE void trashFlagged();
    Q_INVOKABLE void copyFlagged() { performFileOperation(FileOperationKind::copy); }
    Q_INVOKABLE void moveFlagged() { performFileOperation(FileOperationKind::move); }

Q_SIGNALS:
    void folderChanged();
    void videosChanged();
    void photosChanged();
    void foldersChanged();
    void activeTabChanged();
    void pageChanged();
    void flagsChanged();
    void hiddenVideosChanged();
    void viewFlaggedOnlyChanged();
    void fullItemChanged();
    void isScanningChanged();
    void errorMessageChanged();
    void statusMessageChanged();
    void operationProgressChanged();
    void arrangeOpenChanged();
    void historyChanged();
    /// Whatever currentMedia() is made of changed.
    void currentMediaChanged();

private:
    QVariant folderVariant() const;
    QVariant fullItemVariant() const;
    QVariant errorMessageVariant() const;
    QVariant statusMessageVariant() const;
    QVariant operationProgressVariant() const;

    void assignLists(const FileURL &folder, const QList<MediaFile> &videos, const QList<MediaFile> &photos,
                     const QList<FolderCard> &folders);
    void assignVideos(const QList<MediaFile> &videos);
    void assignPhotos(const QList<MediaFile> &photos);
    void assignFlags(const QSet<FileURL> &flags);
    /// After a change of m_flags in place.
    void publishFlags();
    void assignHiddenVideos(const QSet<FileURL> &hidden);
    void assignFullItem(const std::optional<MediaFile> &item);
    void assignIsScanning(bool scanning);
    void assignErrorMessage(const std::optional<QString> &message);
    void assignStatusMessage(const std::optional<QString> &message);
    void assignOperationProgress(const std::optional<double> &progress);
    /// Before the signals of a change of what currentMedia() is made of.
    void forgetCurrentMedia();
    void changeCurrentMedia();

    FolderSnapshot snapshot() const;
    /// Makes whatever openFolder has under way end without a trace.
    void abandonScan();
    void scan(const FileURL &folder);
    void finishScan(const QFuture<ScanResult> &scan);
    void apply(const ScanResult &result);
    void rememberFolder(const FileURL &folder);

    QList<MediaFile> filteredMedia() const;
    /// Keeps the files that are in the set, or those that are not.
    static void keepIf(QList<MediaFile> &files, const QSet<FileURL> &set, bool contained);
    static QList<MediaFile> flaggedItems(const FolderSnapshot &folder);

    using FilesAction = std::function<void(const QList<FileURL> &)>;

    /// Collects the flagged files and, when there are any, acts on them. Of a large folder that takes a
    /// while, which the main thread does not wait for.
    void withFlaggedFiles(const FilesAction &act);
    /// Shows a batch that begins, until its progress is ended.
    BatchProgress showProgress();
    /// Lets a batch stop between two files, or within a large one, when this object ends.
    void keepBatch(const QFuture<void> &batch);
    void startTrash(const QList<FileURL> &files);
    void askToTrash(const QList<FileURL> &files);
    void performFileOperation(FileOperationKind kind);
    void askWhere(const QList<FileURL> &files, FileOperationKind kind);
    void startTransfer(const QList<FileURL> &files, const FileURL &folder, FileOperationKind kind);
    void tellTransferred(const FileTransferResult &result, FileOperationKind kind);
    /// Forgets the files, which takes a while as well, and then calls back.
    void removeFromBrowser(const QList<FileURL> &files, const std::function<void()> &finished);

    Services m_services;
    std::optional<FileURL> m_folder;
    QList<MediaFile> m_videos;
    QList<MediaFile> m_photos;
    QList<FolderCard> m_folders;
    MediaKind m_activeTab = MediaKind::video;
    int m_page = 0;
    QSet<FileURL> m_flags;
    QSet<FileURL> m_hiddenVideos;
    bool m_viewFlaggedOnly = false;
    std::optional<MediaFile> m_fullItem;
    bool m_isScanning = false;
    std::optional<QString> m_errorMessage;
    std::optional<QString> m_statusMessage;
    std::optional<double> m_operationProgress;
    bool m_arrangeOpen = false;
    QList<FolderSnapshot> m_history;
    /// currentMedia() as of the last read; none after a change of what it is made of.
    mutable std::optional<QList<MediaFile>> m_currentMedia;
    /// Counts the changes of what currentMedia() is made of.
    quint64 m_revision = 0;
    /// Tells the answers of the latest opening from those of abandoned ones.
    quint64 m_opening = 0;
    QFuture<ScanResult> m_scanTask;
    QList<QFuture<void>> m_batches;
    /// A chooser or an alert of this object waits for its answer; it is modal, so no second one is shown.
    bool m_asking = false;
};
