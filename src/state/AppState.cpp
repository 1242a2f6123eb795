#include "AppState.h"

AppState::AppState(Services services, QObject *parent) : QObject(parent), m_services(std::move(services)) {}

QVariant AppState::folderVariant() const {
    return m_folder ? QVariant::fromValue(*m_folder) : QVariant();
}
QVariant AppState::fullItemVariant() const {
    return m_fullItem ? QVariant::fromValue(*m_fullItem) : QVariant();
}
QVariant AppState::errorMessageVariant() const {
    return m_errorMessage ? QVariant(*m_errorMessage) : QVariant();
}
QVariant AppState::statusMessageVariant() const {
    return m_statusMessage ? QVariant(*m_statusMessage) : QVariant();
}
QVariant AppState::operationProgressVariant() const {
    return m_operationProgress ? QVariant(*m_operationProgress) : QVariant();
}

void AppState::setActiveTab(MediaKind tab) {
    m_activeTab = tab;
    Q_EMIT activeTabChanged();
    Q_EMIT currentMediaChanged();
    setPage(0);
}
void AppState::setPage(int page) {
    m_page = page;
    Q_EMIT pageChanged();
}
void AppState::setViewFlaggedOnly(bool) {}
void AppState::setArrangeOpen(bool) {}
QList<MediaFile> AppState::currentMedia() const {
    return {};
}
QList<MediaFile> AppState::flaggedItems() const {
    return {};
}
void AppState::chooseFolder() {}
void AppState::openFolder(const FileURL &, bool) {}
void AppState::navigateBack() {}
void AppState::toggleFlag(const MediaFile &) {}
void AppState::setFlagged(const QStringList &, bool) {}
void AppState::hideVideo(const MediaFile &) {}
void AppState::resetHiddenVideos() {}
void AppState::openFullItem(const MediaFile &) {}
void AppState::closeFullItem() {}
void AppState::moveFullItem(int) {}
void AppState::moveVideo(int, int) {}
void AppState::resetVideoOrder() {}
void AppState::dismissError() {}
void AppState::trashFlagged() {}
void AppState::apply(const ScanResult &) {}
void AppState::performFileOperation(FileOperationKind) {}
void AppState::removeFromBrowser(const QSet<QString> &) {}
