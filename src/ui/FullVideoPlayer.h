#pragma once

#include "MPVPlayerController.h"
#include "MediaFile.h"
#include "ScreenSaverInhibitor.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>

#include <memory>

/// The playback of the video that is open full-window, from the view's appearance to its end: audible from
/// the start, toggled by the "MosaTogglePlayback" notification, and keeping the screen awake while it plays.
///
/// Main thread.
class FullVideoPlayer : public QObject, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    /// What to play, taken when the object is complete; a later change is not followed.
    Q_PROPERTY(MediaFile item MEMBER m_item NOTIFY itemChanged REQUIRED)
    Q_PROPERTY(MPVPlayerController *controller READ controller NOTIFY controllerChanged)

public:
    explicit FullVideoPlayer(QObject *parent = nullptr);
    ~FullVideoPlayer() override;

    MPVPlayerController *controller() const { return m_controller.get(); }
    void classBegin() override {}
    void componentComplete() override;

    /// mosaTimestamp() for the view.
    Q_INVOKABLE static QString timestamp(double seconds);

Q_SIGNALS:
    void itemChanged();
    void controllerChanged();

private:
    void onNotification(const QString &name);
    void updateInhibitor();

    MediaFile m_item;
    std::unique_ptr<MPVPlayerController> m_controller;
    ScreenSaverInhibitor m_inhibitor;
};
