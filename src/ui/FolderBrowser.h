#pragma once

#include "FileURL.h"

#include <QAbstractListModel>
#include <QFuture>
#include <QtQml/qqmlregistration.h>

/// What a folder chooser shows and does: one text that says which folder is chosen, and the list of the
/// folders beside or below it.
///
/// The text is the path of the choice. Up to its last slash it names the folder that is listed, and what
/// follows narrows the list to the names that begin so, in any case. The rows have the roles "name" and
/// "path". Folders are listed, tested and made off the main thread; an answer that is no longer waited for is
/// dropped. Main thread.
class FolderBrowser : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a SheetFolderChooser")
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    /// Name of the folder that is listed.
    Q_PROPERTY(QString folderName READ folderName NOTIFY folderChanged)
    /// Its path.
    Q_PROPERTY(QString folderPath READ folderPath NOTIFY folderChanged)
    /// Row of the choice; -1 when it is no row of the list.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged)
    /// The list is on its way.
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
    /// What went wrong last, for the user; "" when nothing did.
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)
    Q_PROPERTY(bool showHidden READ showHidden WRITE setShowHidden NOTIFY showHiddenChanged)

public:
    enum Role { NameRole = Qt::UserRole, PathRole };

    using QAbstractListModel::QAbstractListModel;
    ~FolderBrowser() override;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    const QString &text() const { return m_text; }
    QString folderName() const { return m_folder.lastPathComponent(); }
    QString folderPath() const { return m_folder.path(); }
    int currentRow() const { return m_currentRow; }
    bool busy() const { return m_busy; }
    const QString &error() const { return m_error; }
    bool showHidden() const { return m_showHidden; }
    void setShowHidden(bool show);

    /// Lists the folder, which becomes the choice.
    void open(const FileURL &folder);
    Q_INVOKABLE void openPath(const QString &path) { open(FileURL::fromPath(path)); }
    /// The user typed.
    Q_INVOKABLE void edit(const QString &text);
    /// Name of the folder that the typed beginning most likely means, one in the same case before others; ""
    /// when there is none or nothing is typed.
    Q_INVOKABLE QString completion() const;
    /// Makes a row the choice.
    Q_INVOKABLE void select(int row);
    /// Descends into a row.
    Q_INVOKABLE void enter(int row);
    Q_INVOKABLE void up();
    /// Makes a folder within the one that is listed and descends into it.
    Q_INVOKABLE void createFolder(const QString &name);
    /// Tests the choice; ends in accepted() or in an error.
    Q_INVOKABLE void accept();

Q_SIGNALS:
    void textChanged();
    void folderChanged();
    void currentRowChanged();
    void busyChanged();
    void errorChanged();
    void showHiddenChanged();
    void accepted(const FileURL &folder);

private:
    void setText(const QString &text);
    void setFolder(const FileURL &folder);
    void setCurrentRow(int row);
    void setBusy(bool busy);
    void setError(const QString &error);
    void finishListing(const QFuture<QList<FileURL>> &listing);
    void filter();
    FileURL choice() const;

    QString m_text;
    FileURL m_folder;
    QList<FileURL> m_folders;
    /// Those of m_folders that are rows.
    QList<FileURL> m_rows;
    /// The typed beginning of the rows' names.
    QString m_prefix;
    int m_currentRow = -1;
    bool m_busy = false;
    QString m_error;
    bool m_showHidden = false;
    QFuture<QList<FileURL>> m_listing;
    /// Tells the latest listing and the latest acceptance from earlier ones.
    quint64 m_listings = 0;
    quint64 m_request = 0;
};
