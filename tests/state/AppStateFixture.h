#pragma once

#include "AlertPresenter.h"
#include "AppState.h"
#include "FolderChooser.h"
#include "Preferences.h"

#include <QHash>
#include <QPromise>
#include <QTest>

#include <memory>
#include <vector>

/// One call of an injected service, answered by the test when it likes.
template <typename Result>
struct Call {
    FileURL url;
    std::shared_ptr<QPromise<Result>> promise = std::make_shared<QPromise<Result>>();

    QFuture<Result> start() {
        promise->start();
        return promise->future();
    }
    void answer(const Result &result) {
        promise->addResult(result);
        promise->finish();
    }
    template <typename Error>
    void fail(const Error &error) {
        promise->setException(error);
        promise->finish();
    }
    bool isCancelled() const { return promise->isCanceled(); }
};

class TestChooser : public FolderChooser {
public:
    struct Shown : Call<std::optional<FileURL>> {
        QString title;
        QString prompt;
    };
    std::vector<Shown> shown;

    QFuture<std::optional<FileURL>> choose(const QString &title, const QString &prompt) override {
        shown.push_back({{}, title, prompt});
        return shown.back().start();
    }
};

class TestAlerts : public AlertPresenter {
public:
    struct Shown : Call<int> {
        Alert alert;
    };
    std::vector<Shown> shown;

    QFuture<int> present(const Alert &alert) override {
        shown.push_back({{}, alert});
        return shown.back().start();
    }
};

class TestPreferences : public Preferences {
public:
    QHash<QString, QString> values;

    std::optional<QString> string(const QString &key) const override {
        return values.contains(key) ? std::optional(values.value(key)) : std::nullopt;
    }
    void setString(const QString &key, const QString &value) override { values.insert(key, value); }
};

inline MediaFile mediaFile(const QByteArray &path, MediaKind kind, int addedAt = 0) {
    return {.url = FileURL::fromNativePath(path),
            .kind = kind,
            .addedAt = Timestamp(std::chrono::seconds(addedAt)),
            .aspectRatio = 1.5};
}

/// "/f/v0.mp4", "/f/v1.mp4", … newest first.
inline QList<MediaFile> mediaFiles(const QByteArray &folder, MediaKind kind, int count) {
    QList<MediaFile> files;
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        files.append(mediaFile(
            folder + (kind == MediaKind::video ? "/v" + number + ".mp4" : "/p" + number + ".jpg"), kind, -i));
    }
    return files;
}

/// "/f/v7.mp4, /f/p1.jpg" as "v7 p1".
inline QString names(const QList<MediaFile> &files) {
    QStringList names;
    for (const MediaFile &file : files) {
        names.append(file.url.lastPathComponent().section(u'.', 0, 0));
    }
    return names.join(u' ');
}

inline ScanResult scanResult(const QByteArray &folder, int videos, int photos) {
    return {.folder = FileURL::directory(folder),
            .videos = mediaFiles(folder, MediaKind::video, videos),
            .photos = mediaFiles(folder, MediaKind::photo, photos),
            .folders = {}};
}

/// An AppState whose world is made of calls that the test answers.
struct AppStateFixture {
    struct Transfer : Call<FileTransferResult> {
        QList<FileURL> sources;
        FileOperationKind kind = FileOperationKind::copy;
        FileOperations::Progress progress;
    };
    struct Trash : Call<QList<FileURL>> {
        QList<FileURL> files;
        FileOperations::Progress progress;
    };

    TestChooser chooser;
    TestAlerts alerts;
    TestPreferences preferences;
    std::vector<Call<ScanResult>> scans;
    std::vector<Call<bool>> directoryTests;
    std::vector<Transfer> transfers;
    std::vector<Trash> trashes;
    std::unique_ptr<AppState> state = std::make_unique<AppState>(services());

    AppState::Services services() {
        return {.scan =
                    [this](const FileURL &url) {
                        scans.push_back({.url = url});
                        return scans.back().start();
                    },
                .isDirectory =
                    [this](const FileURL &url) {
                        directoryTests.push_back({.url = url});
                        return directoryTests.back().start();
                    },
                .trash =
                    [this](const QList<FileURL> &files, const FileOperations::Progress &progress) {
                        trashes.push_back({{}, files, progress});
                        return trashes.back().start();
                    },
                .transfer =
                    [this](const QList<FileURL> &sources, const FileURL &folder, FileOperationKind kind,
                           const FileOperations::Progress &progress) {
                        transfers.push_back({{folder}, sources, kind, progress});
                        return transfers.back().start();
                    },
                .chooser = &chooser,
                .alerts = &alerts,
                .preferences = &preferences};
    }

    /// Opens a folder and answers its scan; true when it shows.
    bool show(const ScanResult &result) {
        state->openFolder(result.folder, true);
        scans.back().answer(result);
        return QTest::qWaitFor(
            [this, &result] { return !state->isScanning() && state->folder() == result.folder; });
    }
};
