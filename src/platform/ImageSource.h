#pragma once

#include "ImageDecoder.h"
#include "RegularFile.h"

#include <QImageIOHandler>
#include <QSize>

/// What the decoders of the single formats share. Only for the sources of ImageDecoder.
namespace ImageSource {

/// Chooses how large a picture of the given stored size is to come out.
using TargetSize = std::function<QSize(QSize)>;

/// For the container family of HEIC, HEIF and AVIF.
QImage readHeif(const RegularFile &file, const TargetSize &targetSize,
                const ImageDecoder::Cancelled &cancelled);

/// Reduces while it decodes, row by row: needs the memory of the result, and for progressive pictures that of
/// their coefficients.
QImage readJpeg(const RegularFile &file, const TargetSize &targetSize,
                const ImageDecoder::Cancelled &cancelled);

/// For everything else that Qt reads; the format is one of Qt's names.
QImage readWithQt(const RegularFile &file, const QByteArray &format, const TargetSize &targetSize,
                  const ImageDecoder::Cancelled &cancelled);

/// A decoded and reduced picture of 32 bits a pixel as ImageDecoder hands it out, but for its turn.
QImage finished(QImage image);

/// The picture turned as its metadata demand: mirrored first, then rotated.
QImage transformed(QImage image, QImageIOHandler::Transformations transformation);

/// The picture in sRGB. Pictures that name no colour space are taken to be sRGB already.
QImage toSRGB(QImage image);

} // namespace ImageSource
