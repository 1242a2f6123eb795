#pragma once

/// Lets libheif decode HEVC with libavcodec, which takes less than half the time of its own decoder.
namespace HevcDecoderPlugin {

/// Makes it libheif's first choice from now on. Any thread; only the first call does anything.
void registerOnce();

/// The name of the decoder that libheif brings along, for the pictures that fail with this one.
inline constexpr const char *fallbackId = "libde265";

} // namespace HevcDecoderPlugin
