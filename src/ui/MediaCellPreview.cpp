#include "MediaCellPreview.h"

#include "NotificationCentre.h"
#include "NotificationNames.h"

namespace {

/// How long the pointer may be outside before the preview ends.
constexpr std::chrono::milliseconds standardExitDelay{180};

} // namespace

MediaCellPreview::MediaCellPreview(QObject *parent) : QObject(parent) {
    m_exitTimer.setSingleShot(true);
    m_exitTimer.setTimerType(Qt::PreciseTimer);
    m_exitTimer.setInterval(standardExitDelay);
    m_exitTimer.callOnTimeout(this, &MediaCellPreview::endHover);
    connect(&NotificationCentre::defaultCentre(), &NotificationCentre::posted, this,
            &MediaCellPreview::onNotification);
}

MediaCellPreview::~MediaCellPreview() {
    if (m_controller) {
        m_controller->shutdown();
    }
}

void MediaCellPreview::setItem(const MediaFile &item) {
    if (item == m_item) {
        return;
    }
    const bool otherFile = !m_item.url.isEmpty() && item.url != m_item.url;
    if (otherFile) {
        disappeared();
        setHovering(false);
    }
    m_item = item;
    Q_EMIT itemChanged();
    if (otherFile) {
        Q_EMIT fileChanged();
    }
}

void MediaCellPreview::setState(AppState *state) {
    if (!m_state.replace(state, this)) {
        return;
    }
    if (m_state) {
        connect(m_state, &AppState::fullItemChanged, this, &MediaCellPreview::onFullItemChanged);
    }
    Q_EMIT stateChanged();
}

void MediaCellPreview::entered() {
    m_exitTimer.stop();
    setHovering(true);
    if (m_item.kind == MediaKind::video) {
        startPreview();
    }
}

void MediaCellPreview::left() {
    m_exitTimer.start();
}

void MediaCellPreview::clicked() {
    if (m_item.kind != MediaKind::video) {
        return;
    }
    startPreview();
    m_controller->setIsMuted(false);
    m_controller->setProperty(QStringLiteral("mute"), QStringLiteral("no"));
}

void MediaCellPreview::doubleClicked() {
    endPreview();
    if (m_state) {
        m_state->openFullItem(m_item);
    }
}

void MediaCellPreview::disappeared() {
    m_exitTimer.stop();
    endPreview();
}

void MediaCellPreview::startPreview() {
    if (m_controller) {
        return;
    }
    NotificationCentre::defaultCentre().post(NotificationNames::mosaPreviewClaimed, m_item.id());
    m_controller.reset(new MPVPlayerController(m_item.url, true));
    Q_EMIT controllerChanged();
}

void MediaCellPreview::endPreview() {
    if (!m_controller) {
        return;
    }
    // The views let go of it first and show the thumbnail again; the controller may be in the middle of one
    // of its own signals.
    const auto controller = std::move(m_controller);
    Q_EMIT controllerChanged();
    controller->shutdown();
}

void MediaCellPreview::endHover() {
    setHovering(false);
    endPreview();
}

void MediaCellPreview::setHovering(bool hovering) {
    if (m_hovering != hovering) {
        m_hovering = hovering;
        Q_EMIT hoveringChanged();
    }
}

void MediaCellPreview::onNotification(const QString &name, const QVariant &object) {
    const bool otherClaim = name == NotificationNames::mosaPreviewClaimed &&
                            object.typeId() == QMetaType::QString && object.toString() != m_item.id();
    if (otherClaim && m_controller) {
        m_exitTimer.stop();
        endHover();
    }
}

void MediaCellPreview::onFullItemChanged() {
    if (m_state->fullItem()) {
        endPreview();
    }
}
