#pragma once

#include "FileURL.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

/// Plays one video file through libmpv and publishes its state.
class MPVPlayerController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the views that play, through a factory")
    Q_PROPERTY(double duration READ duration NOTIFY durationChanged)

public:
    MPVPlayerController(const FileURL &url, bool preview, QObject *parent = nullptr);

    double duration() const { return m_duration; }

Q_SIGNALS:
    void durationChanged();

private:
    FileURL m_url;
    bool m_preview;
    double m_duration = 0;
};
