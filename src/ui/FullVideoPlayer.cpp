#include "FullVideoPlayer.h"

#include "MosaTimestamp.h"
#include "NotificationCentre.h"
#include "NotificationNames.h"

FullVideoPlayer::FullVideoPlayer(QObject *parent)
    : QObject(parent), m_inhibitor(QDBusConnection::sessionBus(), tr("Playing a video")) {
    connect(&NotificationCentre::defaultCentre(), &NotificationCentre::posted, this,
            &FullVideoPlayer::onNotification);
}

FullVideoPlayer::~FullVideoPlayer() {
    if (m_controller) {
        m_controller->shutdown();
    }
}

void FullVideoPlayer::componentComplete() {
    m_controller = std::make_unique<MPVPlayerController>(m_item.url, false);
    connect(m_controller.get(), &MPVPlayerController::pausedChanged, this, &FullVideoPlayer::updateInhibitor);
    connect(m_controller.get(), &MPVPlayerController::hasRenderedFrameChanged, this,
            &FullVideoPlayer::updateInhibitor);
    m_controller->setIsMuted(false);
    m_controller->setProperty(QStringLiteral("mute"), QStringLiteral("no"));
    Q_EMIT controllerChanged();
}

QString FullVideoPlayer::timestamp(double seconds) {
    return mosaTimestamp(seconds);
}

void FullVideoPlayer::onNotification(const QString &name) {
    if (name == NotificationNames::mosaTogglePlayback && m_controller) {
        m_controller->togglePause();
    }
}

/// A file that cannot be played has no frame and keeps nothing awake.
void FullVideoPlayer::updateInhibitor() {
    m_inhibitor.setActive(m_controller->hasRenderedFrame() && !m_controller->paused());
}
