#include "FolderBrowser.h"

#include "DirectoryTest.h"
#include "Subfolders.h"
#include "WhenFinished.h"

#include <QDir>

#include <algorithm>

namespace {

bool isHidden(const FileURL &folder) {
    return folder.nativeName().startsWith('.');
}

QString withSlash(const QString &path) {
    return path.endsWith(u'/') ? path : path + u'/';
}

/// As typed, with "~" for the user's own folder.
QString expanded(const QString &text) {
    if (text == QStringLiteral("~") || text.startsWith(QStringLiteral("~/"))) {
        return QDir::homePath() + text.mid(1);
    }
    return text;
}

} // namespace

FolderBrowser::~FolderBrowser() {
    m_listing.cancel();
}

int FolderBrowser::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant FolderBrowser::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const FileURL &folder = m_rows[index.row()];
    switch (role) {
    case NameRole:
        return folder.lastPathComponent();
    case PathRole:
        return folder.path();
    default:
        return {};
    }
}

QHash<int, QByteArray> FolderBrowser::roleNames() const {
    return {{NameRole, "name"}, {PathRole, "path"}};
}

void FolderBrowser::setShowHidden(bool show) {
    if (m_showHidden != show) {
        m_showHidden = show;
        Q_EMIT showHiddenChanged();
        filter();
    }
}

void FolderBrowser::open(const FileURL &folder) {
    setText(withSlash(folder.path()));
    m_prefix.clear();
    setFolder(folder);
    filter();
}

void FolderBrowser::edit(const QString &text) {
    setText(text);
    setError({});
    const QString path = expanded(text);
    const qsizetype slash = path.lastIndexOf(u'/');
    if (!path.startsWith(u'/')) {
        return;
    }
    m_prefix = path.mid(slash + 1);
    const FileURL folder = FileURL::fromPath(path.left(slash + 1));
    if (folder != m_folder) {
        setFolder(folder);
    }
    filter();
}

QString FolderBrowser::completion() const {
    if (m_prefix.isEmpty() || m_rows.isEmpty()) {
        return {};
    }
    const auto exact = std::find_if(m_rows.cbegin(), m_rows.cend(), [this](const FileURL &folder) {
        return folder.lastPathComponent().startsWith(m_prefix);
    });
    return (exact == m_rows.cend() ? m_rows.constFirst() : *exact).lastPathComponent();
}

void FolderBrowser::select(int row) {
    if (row < 0 || row >= m_rows.size()) {
        return;
    }
    setError({});
    setText(m_rows[row].path());
    setCurrentRow(row);
}

void FolderBrowser::enter(int row) {
    if (row >= 0 && row < m_rows.size()) {
        open(FileURL(m_rows[row]));
    }
}

void FolderBrowser::up() {
    open(m_folder.deletingLastPathComponent());
}

void FolderBrowser::createFolder(const QString &name) {
    const QByteArray bytes = FileURL::encode(name);
    if (bytes.isEmpty() || bytes.contains('/') || bytes == "." || bytes == "..") {
        setError(tr("“%1” cannot be the name of a folder.").arg(name));
        return;
    }
    whenFinished(this, Subfolders::create(m_folder, bytes), [this](const QFuture<FileURL> &created) {
        try {
            if (const auto folder = finishedResult(created)) {
                open(*folder);
            }
        } catch (const std::exception &error) {
            setError(QString::fromUtf8(error.what()));
        }
    });
}

void FolderBrowser::accept() {
    const FileURL folder = choice();
    if (folder.isEmpty()) {
        setError(tr("Type a path that begins with “/”."));
        return;
    }
    const quint64 request = ++m_request;
    whenFinished(this, DirectoryTest::isDirectory(folder),
                 [this, folder, request](const QFuture<bool> &answer) {
                     if (request != m_request) {
                         return;
                     }
                     if (finishedResultOr(answer, false)) {
                         Q_EMIT accepted(FileURL::directory(folder.nativePath()));
                     } else {
                         setError(tr("There is no folder “%1”.").arg(folder.lastPathComponent()));
                     }
                 });
}

FileURL FolderBrowser::choice() const {
    const QString path = expanded(m_text);
    return path.startsWith(u'/') ? FileURL::fromPath(path) : FileURL();
}

void FolderBrowser::setText(const QString &text) {
    ++m_request;
    if (m_text != text) {
        m_text = text;
        Q_EMIT textChanged();
    }
}

void FolderBrowser::setFolder(const FileURL &folder) {
    m_listing.cancel();
    m_folder = folder;
    m_folders.clear();
    setError({});
    setBusy(true);
    Q_EMIT folderChanged();
    m_listing = Subfolders::list(folder);
    whenFinished(this, m_listing, [this, number = ++m_listings](const QFuture<QList<FileURL>> &listing) {
        if (number == m_listings) {
            finishListing(listing);
        }
    });
}

void FolderBrowser::finishListing(const QFuture<QList<FileURL>> &listing) {
    setBusy(false);
    try {
        m_folders = finishedResult(listing).value_or(QList<FileURL>());
    } catch (const std::exception &error) {
        setError(QString::fromUtf8(error.what()));
    }
    filter();
}

void FolderBrowser::filter() {
    beginResetModel();
    m_rows.clear();
    for (const FileURL &folder : std::as_const(m_folders)) {
        const bool shown = m_showHidden || m_prefix.startsWith(u'.') || !isHidden(folder);
        if (shown && folder.lastPathComponent().startsWith(m_prefix, Qt::CaseInsensitive)) {
            m_rows.append(folder);
        }
    }
    endResetModel();
    const FileURL chosen = choice();
    setCurrentRow(int(m_rows.indexOf(chosen)));
}

void FolderBrowser::setCurrentRow(int row) {
    if (m_currentRow != row) {
        m_currentRow = row;
        Q_EMIT currentRowChanged();
    }
}

void FolderBrowser::setBusy(bool busy) {
    if (m_busy != busy) {
        m_busy = busy;
        Q_EMIT busyChanged();
    }
}

void FolderBrowser::setError(const QString &error) {
    if (m_error != error) {
        m_error = error;
        Q_EMIT errorChanged();
    }
}
