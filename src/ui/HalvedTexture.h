#pragma once

#include <QImage>
#include <QSGTexture>

#include <memory>

class QQuickWindow;

/// A picture without alpha, halved before it is uploaded: both happen in the thread that draws, right before
/// the texture is drawn for the first time, where they do not hold up the main thread.
class HalvedTexture : public QSGTexture {
    Q_OBJECT

public:
    /// Made for the scene of this window; the image of 32 bits a pixel is halved so many times, at least
    /// once.
    HalvedTexture(QQuickWindow &window, QImage image, int times);
    ~HalvedTexture() override;

    /// Each pixel the mean of four, which pictures of 32 bits allow without conversion; an odd last row or
    /// column is left out. Any thread.
    static QImage halved(const QImage &image, int times);

    qint64 comparisonKey() const override { return qint64(quintptr(this)); }
    QRhiTexture *rhiTexture() const override;
    QSize textureSize() const override { return m_size; }
    bool hasAlphaChannel() const override { return false; }
    bool hasMipmaps() const override { return false; }
    void commitTextureOperations(QRhi *rhi, QRhiResourceUpdateBatch *resourceUpdates) override;

private:
    QQuickWindow &m_window;
    /// Null once it has been halved.
    QImage m_image;
    int m_times;
    QSize m_size;
    std::unique_ptr<QSGTexture> m_texture;
};
