#include "MPVPlayerController.h"

#include "MPVOpenGLView.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr std::chrono::milliseconds pollInterval{200};

const char *yesNo(bool value) {
    return value ? "yes" : "no";
}

/// The shortest decimal text that reads back as the same number, always with a fraction.
QString secondsText(double seconds) {
    // A double's integer part has at most 309 digits, and its fraction, in this form, fewer than 400.
    char digits[800];
    const auto end =
        std::to_chars(std::begin(digits), std::end(digits), seconds, std::chars_format::fixed).ptr;
    QString text = QString::fromLatin1(digits, end - digits);
    return text.contains(QLatin1Char('.')) ? text : text + QLatin1String(".0");
}

} // namespace

MPVPlayerController::MPVPlayerController(const FileURL &url, bool preview, const MPVFunctions &functions,
                                         QObject *parent)
    : QObject(parent), m_functions(functions), m_surface(std::make_unique<MPVOpenGLView>(functions)),
      m_url(url), m_preview(preview), m_isMuted(preview) {
    m_pollTimer.setInterval(pollInterval);
    m_pollTimer.callOnTimeout(this, &MPVPlayerController::poll);
    m_surface->setPresentsFramesThroughLayer(preview);
    start();
}

MPVPlayerController::~MPVPlayerController() {
    shutdown();
}

void MPVPlayerController::start() {
    m_player = m_functions.create();
    if (!m_player) {
        return;
    }
    setOptions();
    if (m_functions.initialize(m_player) < 0) {
        destroyPlayer();
        return;
    }
    leaveVideoHardwareAlone();
    if (m_surface->configureWithMPV(m_player) < 0) {
        destroyPlayer();
        return;
    }
    configurePlayer();
}

void MPVPlayerController::setOptions() {
    setOption("config", "no");
    setOption("load-scripts", "no");
    setOption("load-stats-overlay", "no");
    setOption("load-osd-console", "no");
    setOption("load-auto-profiles", "no");
    setOption("ytdl", "no");
    setOption("osc", "no");
    setOption("input-default-bindings", "no");
    setOption("input-vo-keyboard", "no");
    setOption("hwdec", m_preview ? "no" : "auto-safe");
    setOption("vo", "libmpv");
    setOption("keepaspect", "yes");
    setOption("panscan", "0.0");
    setOption("keep-open", "yes");
    setOption("loop-file", m_preview ? "inf" : "no");
    setOption("aid", "auto");
    setOption("ao", "pipewire,pulse,alsa");
    setOption("audio-client-name", "Mosa");
    setOption("sub-auto", "fuzzy");
    setOption("sub-file-paths", "sub:subs:subtitles");
}

/// A preview decodes in software. Still the renderer would look for all that it could take decoded frames
/// from, open the drivers, and write to the console which of them are not there.
void MPVPlayerController::leaveVideoHardwareAlone() {
    if (m_preview) {
        setProperty(QStringLiteral("gpu-hwdec-interop"), QStringLiteral("no"));
    }
}

/// What merely has a video's name may be a playlist, or may describe streams: it leads neither to other files
/// nor to the network. Subtitles beside the file are found all the same.
void MPVPlayerController::refuseReferences() {
    setProperty(QStringLiteral("access-references"), QStringLiteral("no"));
    setProperty(QStringLiteral("demuxer-lavf-o"), QStringLiteral("protocol_whitelist=file"));
}

void MPVPlayerController::configurePlayer() {
    refuseReferences();
    m_surface->setFrameRenderedHandler([this] {
        m_hasRenderedFrame = true;
        Q_EMIT hasRenderedFrameChanged();
    });
    setProperty(QStringLiteral("mute"), QLatin1String(yesNo(m_preview)));
    sendVolume();
    command({QStringLiteral("loadfile"), m_url.path(), QStringLiteral("replace")});
    setPaused(false);
    m_pollTimer.start();
}

void MPVPlayerController::shutdown() {
    if (m_isShutdown) {
        return;
    }
    m_isShutdown = true;
    m_pollTimer.stop();
    m_surface->shutdownRenderContext();
    destroyPlayer();
}

void MPVPlayerController::destroyPlayer() {
    if (m_player) {
        m_functions.terminateDestroy(std::exchange(m_player, nullptr));
    }
}

void MPVPlayerController::poll() {
    if (!m_player) {
        return;
    }
    if (const auto position = propertySeconds("time-pos")) {
        setPosition(*position);
    }
    if (const auto duration = propertySeconds("duration")) {
        m_duration = *duration;
        Q_EMIT durationChanged();
    }
    if (const auto pause = propertyString("pause")) {
        setPaused(*pause == "yes");
    }
    if (const auto mute = propertyString("mute")) {
        setIsMuted(*mute == "yes");
    }
    if (const auto output = propertyString("current-ao")) {
        m_audioOutput = QString::fromUtf8(*output);
        Q_EMIT audioOutputChanged();
    }
}

void MPVPlayerController::togglePause() {
    const bool old = m_paused;
    setPaused(!old);
    setProperty(QStringLiteral("pause"), QLatin1String(yesNo(!old)));
}

void MPVPlayerController::toggleMute() {
    const bool old = m_isMuted;
    setIsMuted(!old);
    setProperty(QStringLiteral("mute"), QLatin1String(yesNo(!old)));
}

void MPVPlayerController::seek(double seconds) {
    const double target = std::min(std::max(seconds, 0.0), std::max(m_duration, 0.0));
    command({QStringLiteral("seek"), secondsText(target), QStringLiteral("absolute+exact")});
    setPosition(target);
}

void MPVPlayerController::setVolume(double volume) {
    if (!std::isfinite(volume)) {
        return;
    }
    m_volume = volume;
    Q_EMIT volumeChanged();
    sendVolume();
}

void MPVPlayerController::sendVolume() {
    constexpr double limit = 9.2e18; // what a 64-bit integer holds
    const auto whole = qint64(std::clamp(m_volume, -limit, limit));
    setProperty(QStringLiteral("volume"), QString::number(whole));
}

void MPVPlayerController::setProperty(const QString &name, const QString &value) {
    if (m_player) {
        m_functions.setPropertyString(m_player, name.toUtf8().constData(), value.toUtf8().constData());
    }
}

void MPVPlayerController::command(const QStringList &arguments) {
    if (!m_player) {
        return;
    }
    std::vector<QByteArray> copies;
    copies.reserve(size_t(arguments.size()));
    std::vector<const char *> texts;
    for (const QString &argument : arguments) {
        // Not simply UTF-8: a path's bytes may be none.
        texts.push_back(copies.emplace_back(FileURL::encode(argument)).constData());
    }
    texts.push_back(nullptr);
    m_functions.command(m_player, texts.data());
}

void MPVPlayerController::setOption(const char *name, const char *value) {
    m_functions.setOptionString(m_player, name, value);
}

std::optional<QByteArray> MPVPlayerController::propertyString(const char *name) const {
    if (!m_player) {
        return std::nullopt;
    }
    const std::unique_ptr<char, void (*)(void *)> text(m_functions.getPropertyString(m_player, name),
                                                       m_functions.free);
    return text ? std::optional(QByteArray(text.get())) : std::nullopt;
}

/// A time, not below 0; none when the property has no value or not that of a number.
std::optional<double> MPVPlayerController::propertySeconds(const char *name) const {
    const auto text = propertyString(name);
    bool isNumber = false;
    const double seconds = text ? text->toDouble(&isNumber) : 0;
    return isNumber && std::isfinite(seconds) ? std::optional(std::max(seconds, 0.0)) : std::nullopt;
}

void MPVPlayerController::setPosition(double position) {
    m_position = position;
    Q_EMIT positionChanged();
}

void MPVPlayerController::setPaused(bool paused) {
    m_paused = paused;
    Q_EMIT pausedChanged();
}

void MPVPlayerController::setIsMuted(bool muted) {
    m_isMuted = muted;
    Q_EMIT isMutedChanged();
}
