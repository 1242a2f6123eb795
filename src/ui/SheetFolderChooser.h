#pragma once

#include "FolderBrowser.h"
#include "FolderChooser.h"

#include <QObject>
#include <QPromise>
#include <QQueue>

/// Chooses folders in a sheet within the window, one question at a time in the order of asking.
/// FolderChooserSheet.qml draws the one that is up. Main thread. The end of this object cancels the questions
/// that are still open.
class SheetFolderChooser : public QObject, public FolderChooser {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    /// The sheet is up: the window's keys belong to it.
    Q_PROPERTY(bool active READ active NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString prompt READ prompt NOTIFY changed)
    /// A folder to be opened has to exist; one to copy or move into can be made.
    Q_PROPERTY(bool createsFolders READ createsFolders NOTIFY changed)
    Q_PROPERTY(FolderBrowser *browser READ browser CONSTANT)
    /// Folders to start from: maps with "name", "path" and "symbol".
    Q_PROPERTY(QVariantList places READ places NOTIFY placesChanged)

public:
    /// The first question starts in the user's own folder, each further one where the last was answered.
    explicit SheetFolderChooser(QObject *parent = nullptr);

    QFuture<std::optional<FileURL>> choose(const QString &title, const QString &prompt) override;

    bool active() const { return !m_questions.isEmpty(); }
    QString title() const { return active() ? m_questions.head().title : QString(); }
    QString prompt() const { return active() ? m_questions.head().prompt : QString(); }
    bool createsFolders() const;
    FolderBrowser *browser() { return &m_browser; }
    const QVariantList &places() const { return m_places; }

    Q_INVOKABLE void cancel() { answer(std::nullopt); }

Q_SIGNALS:
    void changed();
    void placesChanged();

private:
    using Answer = std::optional<FileURL>;
    struct Question {
        QString title;
        QString prompt;
        std::shared_ptr<QPromise<Answer>> promise;
    };

    void show();
    void answer(const Answer &folder);

    QQueue<Question> m_questions;
    FolderBrowser m_browser;
    FileURL m_start;
    QVariantList m_places;
};
