#include "ImageSource.h"

#include "AreaReducer.h"
#include "ExifOrientation.h"

#include <QColorSpace>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <jpeglib.h>

// libjpeg reports errors by jumping out: the functions that call into it keep no object with a destructor on
// their own stack, and all that must survive lives in Decompressor.

namespace {

constexpr int dctSize = 8;
/// Encoders write about ten; each costs a pass over the whole picture.
constexpr int mostScans = 200;
/// As Qt lays RGB32 out.
constexpr J_COLOR_SPACE pixelLayout =
    QSysInfo::ByteOrder == QSysInfo::LittleEndian ? JCS_EXT_BGRA : JCS_EXT_ARGB;

struct Decompressor {
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    jpeg_source_mgr source{};
    jpeg_progress_mgr progress{};
    std::jmp_buf escape{};
    const RegularFile &file;
    const ImageDecoder::Cancelled &cancelled;
    qint64 position = 0;
    bool ended = false;
    std::vector<JOCTET> buffer = std::vector<JOCTET>(65536);

    Decompressor(const RegularFile &input, const ImageDecoder::Cancelled &stop)
        : file(input), cancelled(stop) {}
    Decompressor(const Decompressor &) = delete;
    Decompressor &operator=(const Decompressor &) = delete;
    ~Decompressor() { jpeg_destroy_decompress(&info); }
};

template <typename Info>
Decompressor &self(Info info) {
    return *static_cast<Decompressor *>(info->client_data);
}

[[noreturn]] void fail(j_common_ptr info) {
    std::longjmp(self(info).escape, 1);
}

void keepSilent(j_common_ptr) {}

void countWarning(j_common_ptr info, int level) {
    if (level < 0) {
        ++info->err->num_warnings;
    }
}

void checkProgress(j_common_ptr info) {
    Decompressor &jpeg = self(info);
    if ((jpeg.cancelled && jpeg.cancelled()) || jpeg.info.input_scan_number > mostScans) {
        fail(info);
    }
}

void nothing(j_decompress_ptr) {}

boolean fillBuffer(j_decompress_ptr info) {
    Decompressor &jpeg = self(info);
    qint64 got = jpeg.file.read(jpeg.position, jpeg.buffer.data(), qint64(jpeg.buffer.size()));
    if (got <= 0) {
        // What is there is shown; the decoder fills up what is missing.
        jpeg.ended = true;
        jpeg.buffer[0] = 0xFF;
        jpeg.buffer[1] = JPEG_EOI;
        got = 2;
    }
    jpeg.position += got;
    jpeg.source.next_input_byte = jpeg.buffer.data();
    jpeg.source.bytes_in_buffer = size_t(got);
    return TRUE;
}

void skipInput(j_decompress_ptr info, long count) {
    Decompressor &jpeg = self(info);
    if (count <= 0) {
        return;
    }
    const auto inBuffer = long(jpeg.source.bytes_in_buffer);
    if (count <= inBuffer) {
        jpeg.source.next_input_byte += count;
        jpeg.source.bytes_in_buffer -= size_t(count);
        return;
    }
    jpeg.position += count - inBuffer;
    fillBuffer(info);
}

bool readHeader(Decompressor &jpeg) {
    jpeg.info.err = jpeg_std_error(&jpeg.errors);
    jpeg.errors.error_exit = fail;
    jpeg.errors.output_message = keepSilent;
    jpeg.errors.emit_message = countWarning;
    jpeg.info.client_data = &jpeg;
    if (setjmp(jpeg.escape) != 0) {
        return false;
    }
    jpeg_create_decompress(&jpeg.info);
    // Bounds the coefficients of progressive pictures, which are kept whole.
    jpeg.info.mem->max_memory_to_use = long(ImageDecoder::memoryLimit);
    jpeg.source.init_source = nothing;
    jpeg.source.fill_input_buffer = fillBuffer;
    jpeg.source.skip_input_data = skipInput;
    jpeg.source.resync_to_restart = jpeg_resync_to_restart;
    jpeg.source.term_source = nothing;
    jpeg.info.src = &jpeg.source;
    jpeg.progress.progress_monitor = checkProgress;
    jpeg.info.progress = &jpeg.progress;
    jpeg_save_markers(&jpeg.info, JPEG_APP0 + 1, 0xFFFF);
    jpeg_save_markers(&jpeg.info, JPEG_APP0 + 2, 0xFFFF);
    return jpeg_read_header(&jpeg.info, TRUE) == JPEG_HEADER_OK;
}

bool startDecoding(Decompressor &jpeg) {
    if (setjmp(jpeg.escape) != 0) {
        return false;
    }
    return jpeg_start_decompress(&jpeg.info) != FALSE;
}

/// False at the end of the rows, or of what can be decoded.
bool readRow(Decompressor &jpeg, JSAMPROW row) {
    if (setjmp(jpeg.escape) != 0) {
        return false;
    }
    return jpeg.info.output_scanline < jpeg.info.output_height &&
           jpeg_read_scanlines(&jpeg.info, &row, 1) == 1;
}

/// Takes memory that libjpeg allocated with malloc.
QColorSpace colorSpace(Decompressor &jpeg) {
    JOCTET *profile = nullptr;
    unsigned int length = 0;
    if (setjmp(jpeg.escape) != 0 || jpeg_read_icc_profile(&jpeg.info, &profile, &length) == FALSE) {
        return {};
    }
    const QByteArray bytes(reinterpret_cast<const char *>(profile), qsizetype(length));
    std::free(profile);
    return QColorSpace::fromIccProfile(bytes);
}

QImageIOHandler::Transformations transformation(const Decompressor &jpeg) {
    const QByteArrayView mark("Exif\0\0", 6);
    for (const jpeg_marker_struct *marker = jpeg.info.marker_list; marker != nullptr; marker = marker->next) {
        const QByteArrayView content(reinterpret_cast<const char *>(marker->data), marker->data_length);
        if (marker->marker == JPEG_APP0 + 1 && content.startsWith(mark)) {
            return ExifOrientation::transformation(content.sliced(mark.size()));
        }
    }
    return {};
}

/// The decoder itself reduces by eighths, at a fraction of the cost: the smallest that still reaches the
/// target.
void chooseScale(jpeg_decompress_struct &info, QSize target) {
    const auto reaches = [&](unsigned eighths) {
        const auto scaled = [&](unsigned side) { return int((side * eighths + dctSize - 1) / dctSize); };
        return scaled(info.image_width) >= target.width() && scaled(info.image_height) >= target.height();
    };
    unsigned eighths = 1;
    while (eighths < dctSize && !reaches(eighths)) {
        ++eighths;
    }
    info.scale_num = eighths;
    info.scale_denom = dctSize;
}

void chooseColours(jpeg_decompress_struct &info) {
    const bool inks = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
    info.out_color_space = inks ? JCS_CMYK : pixelLayout;
}

/// Four inks to RGB32, in place. Files that carry Adobe's mark hold them inverted.
void inksToPixels(uchar *row, int width, bool inverted) {
    for (int x = 0; x < width; ++x, row += 4) {
        const auto light = [inverted](uchar ink) { return inverted ? ink : 255 - ink; };
        const int black = light(row[3]);
        const QRgb pixel =
            qRgb(light(row[0]) * black / 255, light(row[1]) * black / 255, light(row[2]) * black / 255);
        std::copy_n(reinterpret_cast<const uchar *>(&pixel), 4, row);
    }
}

QImage decode(Decompressor &jpeg, QSize target) {
    const QSize size(int(jpeg.info.output_width), int(jpeg.info.output_height));
    const bool inks = jpeg.info.out_color_space == JCS_CMYK;
    const bool inverted = jpeg.info.saw_Adobe_marker != FALSE;
    AreaReducer reducer(size, target, QImage::Format_RGB32);
    std::vector<uchar> row(size_t(size.width()) * 4);
    // Behind the end of the data there is nothing to be seen, but it could take minutes to decode.
    constexpr int rowsBehindTheEnd = 256;
    int behind = 0;
    while (behind < rowsBehindTheEnd && readRow(jpeg, row.data())) {
        if (inks) {
            inksToPixels(row.data(), size.width(), inverted);
        }
        reducer.addRow(row.data());
        behind += jpeg.ended ? 1 : 0;
    }
    return jpeg.info.output_scanline > 0 ? reducer.take() : QImage();
}

} // namespace

namespace ImageSource {

QImage readJpeg(const RegularFile &file, const TargetSize &targetSize,
                const ImageDecoder::Cancelled &cancelled) {
    Decompressor jpeg(file, cancelled);
    if (!readHeader(jpeg)) {
        return {};
    }
    const QSize size(int(jpeg.info.image_width), int(jpeg.info.image_height));
    const QSize target = targetSize(size);
    if (qint64(target.width()) * target.height() > ImageDecoder::memoryLimit / 4) {
        return {};
    }
    chooseScale(jpeg.info, target);
    chooseColours(jpeg.info);
    // Finer interpolation of the colour planes is lost when the picture is reduced.
    jpeg.info.do_fancy_upsampling = target == size ? TRUE : FALSE;
    const QImageIOHandler::Transformations turn = transformation(jpeg);
    const QColorSpace space = colorSpace(jpeg);
    if (!startDecoding(jpeg)) {
        return {};
    }
    QImage image = decode(jpeg, target);
    image.setColorSpace(space);
    return image.isNull() ? image : transformed(finished(image), turn);
}

} // namespace ImageSource
