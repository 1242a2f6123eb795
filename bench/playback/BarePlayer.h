#pragma once

#include <QByteArray>

/// The peer: the player library called in the plainest way, without any of Mosa's code.
namespace BarePlayer {

/// Milliseconds from creating a player to its first drawn frame in a framebuffer of 640 by 360 pixels, in a
/// context of its own; negative when no frame came.
double firstFrame(const QByteArray &file);

} // namespace BarePlayer
