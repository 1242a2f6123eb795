#pragma once

#include "FileURL.h"
#include "MPVFunctions.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

class MPVOpenGLView;

/// Plays one video file through libmpv and publishes its state.
///
/// A preview is muted and loops; otherwise the file plays once, audibly, and stays on its last frame.
/// Playback starts with the object and ends with shutdown(), which every owner calls before it lets go; a
/// controller is never started again. Where the player cannot be started, the controller is inert: its
/// properties keep their first values, and nothing happens.
///
/// Main thread only. What mpv knows is read five times a second; every assignment notifies, changed or not.
class MPVPlayerController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the views that play")
    Q_PROPERTY(bool preview READ preview CONSTANT)
    /// Seconds, never negative; 0 while not known.
    Q_PROPERTY(double duration READ duration NOTIFY durationChanged)
    Q_PROPERTY(double position READ position NOTIFY positionChanged)
    Q_PROPERTY(bool paused READ paused NOTIFY pausedChanged)
    /// Writing only publishes the value; the "mute" property is what silences the player.
    Q_PROPERTY(bool isMuted READ isMuted WRITE setIsMuted NOTIFY isMutedChanged)
    /// The name of the audio output in use; empty while there is none.
    Q_PROPERTY(QString audioOutput READ audioOutput NOTIFY audioOutputChanged)
    /// True once a frame of the video has been drawn, and from then on.
    Q_PROPERTY(bool hasRenderedFrame READ hasRenderedFrame NOTIFY hasRenderedFrameChanged)
    /// 0 to 100; every assignment is sent to the player, without its fraction.
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY volumeChanged)

public:
    MPVPlayerController(const FileURL &url, bool preview,
                        const MPVFunctions &functions = MPVFunctions::standard(), QObject *parent = nullptr);
    ~MPVPlayerController() override;

    MPVOpenGLView *surface() const { return m_surface.get(); }
    const FileURL &url() const { return m_url; }
    bool preview() const { return m_preview; }
    double duration() const { return m_duration; }
    double position() const { return m_position; }
    bool paused() const { return m_paused; }
    bool isMuted() const { return m_isMuted; }
    void setIsMuted(bool muted);
    const QString &audioOutput() const { return m_audioOutput; }
    bool hasRenderedFrame() const { return m_hasRenderedFrame; }
    double volume() const { return m_volume; }
    void setVolume(double volume);

    Q_INVOKABLE void togglePause();
    Q_INVOKABLE void toggleMute();
    /// To an exact time, kept within the duration; 0 while that is not known.
    Q_INVOKABLE void seek(double seconds);
    using QObject::setProperty;
    /// Sets one of the player's properties.
    Q_INVOKABLE void setProperty(const QString &name, const QString &value);
    /// Runs one of the player's commands. Paths are given as FileURL::path() gives them.
    Q_INVOKABLE void command(const QStringList &arguments);
    /// Stops playback and releases the player; a second call does nothing.
    void shutdown();

Q_SIGNALS:
    void durationChanged();
    void positionChanged();
    void pausedChanged();
    void isMutedChanged();
    void audioOutputChanged();
    void hasRenderedFrameChanged();
    void volumeChanged();

private:
    void start();
    void setOptions();
    void leaveVideoHardwareAlone();
    void refuseReferences();
    void configurePlayer();
    void destroyPlayer();
    void poll();
    void sendVolume();
    void setOption(const char *name, const char *value);
    std::optional<QByteArray> propertyString(const char *name) const;
    std::optional<double> propertySeconds(const char *name) const;
    void setPosition(double position);
    void setPaused(bool paused);

    const MPVFunctions &m_functions;
    std::unique_ptr<MPVOpenGLView> m_surface;
    FileURL m_url;
    bool m_preview;
    double m_duration = 0;
    double m_position = 0;
    bool m_paused = false;
    bool m_isMuted;
    QString m_audioOutput;
    bool m_hasRenderedFrame = false;
    double m_volume = 70;
    mpv_handle *m_player = nullptr;
    QTimer m_pollTimer;
    bool m_isShutdown = false;
};
