#include "HevcDecoderPlugin.h"

#include "FFmpegPointers.h"
#include "HeifPointers.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include <libheif/heif.h>
#include <libheif/heif_plugin.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/log.h>
#include <libavutil/pixdesc.h>
}

namespace {

/// Of one coded picture; grids are made of many smaller ones.
constexpr int64_t largestPicture = 200'000'000;
/// In coded bytes: tiles of 512 × 512 stay below it at any usual quality.
constexpr size_t largestTile = 256 << 10;

constexpr heif_error success{heif_error_Ok, heif_suberror_Unspecified, ""};
constexpr heif_error failure{heif_error_Decoder_plugin_error, heif_suberror_Unspecified, "HEVC decoding"};

/// Collects the units of one picture with start codes instead of lengths.
struct PictureDecoder {
    std::vector<uint8_t> stream;

    bool push(const uint8_t *data, size_t size) {
        constexpr std::array<uint8_t, 4> startCode{0, 0, 0, 1};
        while (size > 0) {
            if (size < 4) {
                return false;
            }
            const size_t length =
                size_t(data[0]) << 24 | size_t(data[1]) << 16 | size_t(data[2]) << 8 | data[3];
            data += 4;
            size -= 4;
            if (length > size) {
                return false;
            }
            stream.insert(stream.end(), startCode.begin(), startCode.end());
            stream.insert(stream.end(), data, data + length);
            data += length;
            size -= length;
        }
        return true;
    }

    FFmpeg::Frame decode() const;
};

FFmpeg::Frame PictureDecoder::decode() const {
    const AVCodec *codec = avcodec_find_decoder(AV_CODEC_ID_HEVC);
    const FFmpeg::Decoder context(codec != nullptr ? avcodec_alloc_context3(codec) : nullptr);
    const FFmpeg::Packet packet(av_packet_alloc());
    if (context == nullptr || packet == nullptr || av_new_packet(packet.get(), int(stream.size())) < 0) {
        return nullptr;
    }
    std::memcpy(packet->data, stream.data(), stream.size());
    packet->flags |= AV_PKT_FLAG_KEY;
    context->max_pixels = largestPicture;
    // libheif decodes the tiles of a grid in threads of its own; a large picture is not one of them.
    context->thread_type = FF_THREAD_SLICE;
    context->thread_count =
        stream.size() > largestTile ? int(std::min(4U, std::thread::hardware_concurrency())) : 1;
    // A picture that is not whole is better left to the other decoder.
    context->err_recognition = AV_EF_EXPLODE;
    FFmpeg::Frame frame(av_frame_alloc());
    const bool decoded = frame != nullptr && avcodec_open2(context.get(), codec, nullptr) == 0 &&
                         avcodec_send_packet(context.get(), packet.get()) == 0 &&
                         avcodec_send_packet(context.get(), nullptr) == 0 &&
                         avcodec_receive_frame(context.get(), frame.get()) == 0 &&
                         (frame->flags & AV_FRAME_FLAG_CORRUPT) == 0;
    return decoded ? std::move(frame) : nullptr;
}

struct Layout {
    heif_colorspace colorspace;
    heif_chroma chroma;
    int planes;
};

/// None for what this decoder does not pass on.
std::optional<Layout> layoutOf(const AVPixFmtDescriptor &format) {
    constexpr uint64_t unwanted = AV_PIX_FMT_FLAG_BE | AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_HWACCEL |
                                  AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_ALPHA | AV_PIX_FMT_FLAG_FLOAT;
    if ((format.flags & unwanted) != 0 || (format.nb_components != 1 && format.nb_components != 3)) {
        return std::nullopt;
    }
    if (format.nb_components == 1) {
        return Layout{heif_colorspace_monochrome, heif_chroma_monochrome, 1};
    }
    if ((format.flags & AV_PIX_FMT_FLAG_PLANAR) == 0) {
        return std::nullopt;
    }
    if (format.log2_chroma_w == 1 && format.log2_chroma_h == 1) {
        return Layout{heif_colorspace_YCbCr, heif_chroma_420, 3};
    }
    if (format.log2_chroma_w == 1 && format.log2_chroma_h == 0) {
        return Layout{heif_colorspace_YCbCr, heif_chroma_422, 3};
    }
    if (format.log2_chroma_w == 0 && format.log2_chroma_h == 0) {
        return Layout{heif_colorspace_YCbCr, heif_chroma_444, 3};
    }
    return std::nullopt;
}

bool copyPlane(heif_image *image, heif_channel channel, const AVFrame &frame, int plane,
               const AVPixFmtDescriptor &format) {
    const bool chroma = plane > 0;
    const int width = chroma ? AV_CEIL_RSHIFT(frame.width, format.log2_chroma_w) : frame.width;
    const int height = chroma ? AV_CEIL_RSHIFT(frame.height, format.log2_chroma_h) : frame.height;
    const int depth = format.comp[plane].depth;
    if (heif_image_add_plane(image, channel, width, height, depth).code != heif_error_Ok) {
        return false;
    }
    int stride = 0;
    uint8_t *target = heif_image_get_plane(image, channel, &stride);
    const size_t length = size_t(width) * (depth > 8 ? 2 : 1);
    for (int y = 0; y < height; ++y) {
        std::memcpy(target + ptrdiff_t(y) * stride, frame.data[plane] + ptrdiff_t(y) * frame.linesize[plane],
                    length);
    }
    return true;
}

/// What the coded picture says of its own colours; the container's word goes before it.
void setColours(heif_image *image, const AVFrame &frame) {
    const Heif<heif_color_profile_nclx> profile(heif_nclx_color_profile_alloc());
    if (profile == nullptr) {
        return;
    }
    heif_nclx_color_profile_set_color_primaries(profile.get(), uint16_t(frame.color_primaries));
    heif_nclx_color_profile_set_transfer_characteristics(profile.get(), uint16_t(frame.color_trc));
    heif_nclx_color_profile_set_matrix_coefficients(profile.get(), uint16_t(frame.colorspace));
    profile->full_range_flag = frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0;
    heif_image_set_nclx_color_profile(image, profile.get());
}

Heif<heif_image> imageOf(const AVFrame &frame) {
    const AVPixFmtDescriptor *format = av_pix_fmt_desc_get(AVPixelFormat(frame.format));
    const auto layout = format != nullptr ? layoutOf(*format) : std::nullopt;
    heif_image *made = nullptr;
    if (!layout ||
        heif_image_create(frame.width, frame.height, layout->colorspace, layout->chroma, &made).code !=
            heif_error_Ok) {
        return nullptr;
    }
    Heif<heif_image> image(made);
    constexpr std::array channels{heif_channel_Y, heif_channel_Cb, heif_channel_Cr};
    for (int plane = 0; plane < layout->planes; ++plane) {
        if (!copyPlane(made, channels[size_t(plane)], frame, plane, *format)) {
            return nullptr;
        }
    }
    setColours(made, frame);
    return image;
}

const char *name() {
    return "libavcodec HEVC decoder";
}

int supports(heif_compression_format format) {
    constexpr int beforeTheDefault = 200;
    return format == heif_compression_HEVC ? beforeTheDefault : 0;
}

heif_error create(void **decoder) {
    *decoder = std::make_unique<PictureDecoder>().release();
    return success;
}

void destroy(void *decoder) {
    const std::unique_ptr<PictureDecoder> owned(static_cast<PictureDecoder *>(decoder));
}

heif_error push(void *decoder, const void *data, size_t size) {
    return static_cast<PictureDecoder *>(decoder)->push(static_cast<const uint8_t *>(data), size) ? success
                                                                                                  : failure;
}

heif_error decode(void *decoder, heif_image **result) {
    const FFmpeg::Frame frame = static_cast<const PictureDecoder *>(decoder)->decode();
    Heif<heif_image> image = frame != nullptr ? imageOf(*frame) : nullptr;
    *result = image.release();
    return *result != nullptr ? success : failure;
}

void setStrict(void *, int) {}

constexpr heif_decoder_plugin plugin{.plugin_api_version = 3,
                                     .get_plugin_name = name,
                                     .init_plugin = nullptr,
                                     .deinit_plugin = nullptr,
                                     .does_support_format = supports,
                                     .new_decoder = create,
                                     .free_decoder = destroy,
                                     .push_data = push,
                                     .decode_image = decode,
                                     .set_strict_decoding = setStrict,
                                     .id_name = "mosa-libavcodec"};

} // namespace

namespace HevcDecoderPlugin {

void registerOnce() {
    static std::once_flag once;
    std::call_once(once, [] {
        if (avcodec_find_decoder(AV_CODEC_ID_HEVC) != nullptr) {
            av_log_set_level(AV_LOG_QUIET);
            heif_register_decoder_plugin(&plugin);
        }
    });
}

} // namespace HevcDecoderPlugin
