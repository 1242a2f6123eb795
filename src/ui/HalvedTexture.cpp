#include "HalvedTexture.h"

#include <QQuickWindow>

#include <algorithm>

namespace {

QSize halvedSize(QSize size) {
    return {std::max(1, size.width() / 2), std::max(1, size.height() / 2)};
}

QImage halvedOnce(const QImage &image) {
    constexpr quint32 evenBytes = 0x00FF00FF;
    constexpr quint32 rounding = 0x00020002;
    QImage result(halvedSize(image.size()), image.format());
    const size_t right = image.width() > 1 ? 1 : 0;
    const int below = image.height() > 1 ? 1 : 0;
    for (int y = 0; y < result.height(); ++y) {
        const auto *upper = reinterpret_cast<const quint32 *>(image.constScanLine(2 * y));
        const auto *lower = reinterpret_cast<const quint32 *>(image.constScanLine(2 * y + below));
        auto *target = reinterpret_cast<quint32 *>(result.scanLine(y));
        for (size_t x = 0; x < size_t(result.width()); ++x) {
            const quint32 a = upper[2 * x];
            const quint32 b = upper[2 * x + right];
            const quint32 c = lower[2 * x];
            const quint32 d = lower[2 * x + right];
            const quint32 even =
                (a & evenBytes) + (b & evenBytes) + (c & evenBytes) + (d & evenBytes) + rounding;
            const quint32 odd = (a >> 8 & evenBytes) + (b >> 8 & evenBytes) + (c >> 8 & evenBytes) +
                                (d >> 8 & evenBytes) + rounding;
            target[x] = (even >> 2 & evenBytes) | (odd >> 2 & evenBytes) << 8;
        }
    }
    return result;
}

} // namespace

HalvedTexture::HalvedTexture(QQuickWindow &window, QImage image, int times)
    : m_window(window), m_image(std::move(image)), m_times(times), m_size(m_image.size()) {
    for (int i = 0; i < times; ++i) {
        m_size = halvedSize(m_size);
    }
}

HalvedTexture::~HalvedTexture() = default;

QImage HalvedTexture::halved(const QImage &image, int times) {
    QImage result = image;
    for (int i = 0; i < times; ++i) {
        result = halvedOnce(result);
    }
    return result;
}

QRhiTexture *HalvedTexture::rhiTexture() const {
    return m_texture ? m_texture->rhiTexture() : nullptr;
}

void HalvedTexture::commitTextureOperations(QRhi *rhi, QRhiResourceUpdateBatch *resourceUpdates) {
    if (!m_texture) {
        m_texture.reset(
            m_window.createTextureFromImage(halved(m_image, m_times), QQuickWindow::TextureIsOpaque));
        m_image = {};
    }
    if (m_texture) {
        m_texture->commitTextureOperations(rhi, resourceUpdates);
    }
}
