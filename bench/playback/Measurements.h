#pragma once

#include <QByteArray>
#include <QString>

class QQuickWindow;

/// Each prints one line of figures. All need a window on a display with OpenGL, and the main thread.
namespace Measurements {

/// How long the main thread was away from its event loop, in gaps over 8 ms between the ticks of a 1 ms
/// timer, while the file plays full-window.
void stalls(QQuickWindow &window, const QByteArray &file);
/// How long starting and ending a preview hold the main thread.
void startsAndEnds(QQuickWindow &window, const QByteArray &file);
/// From starting a preview to its first shown frame, beside the bare library's first drawn frame, by turns.
void firstFrames(QQuickWindow &window, const QByteArray &file);
/// Processor time of a playing preview tile and of a full-window video, beside the mpv program's at that
/// size.
void processorTime(QQuickWindow &window, const QByteArray &file);

} // namespace Measurements
