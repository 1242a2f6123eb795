#pragma once

#include <QtGlobal>

#include <optional>
#include <span>

/// The shape of a stored pixel, width divided by height, as the coded video itself tells it. Containers that
/// are made for broadcast have no other place for it.
namespace SampleAspect {

/// From the first sequence header of MPEG-1 or MPEG-2 video in the bytes.
std::optional<double> ofMpegVideo(std::span<const quint8> bytes);

/// From the first sequence parameter set of H.264 in the bytes (start codes, or the avcC record of other
/// containers).
std::optional<double> ofH264(std::span<const quint8> bytes);

} // namespace SampleAspect
