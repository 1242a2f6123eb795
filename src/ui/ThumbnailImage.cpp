#include "ThumbnailImage.h"

#include "PixelGrid.h"
#include "ThumbnailService.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGTexture>

#include <algorithm>
#include <cmath>

namespace {

/// Each pixel the mean of four, which thumbnails of 32 bits allow without conversion; an odd last row or
/// column is left out. Fast enough for a page of them between two frames.
QImage halved(const QImage &image) {
    constexpr quint32 evenBytes = 0x00FF00FF;
    constexpr quint32 rounding = 0x00020002;
    QImage result(std::max(1, image.width() / 2), std::max(1, image.height() / 2), image.format());
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

ThumbnailImage::ThumbnailImage(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(&m_request, &QFutureWatcherBase::finished, this, [this] { receive(m_request.future()); });
}

ThumbnailImage::~ThumbnailImage() {
    m_request.cancel();
}

void ThumbnailImage::setItem(const MediaFile &item) {
    if (m_item == item) {
        return;
    }
    const bool otherFile = m_item.url != item.url;
    m_item = item;
    if (otherFile && isComponentComplete()) {
        request();
    }
    Q_EMIT itemChanged();
}

void ThumbnailImage::componentComplete() {
    QQuickItem::componentComplete();
    request();
}

void ThumbnailImage::request() {
    m_request.cancel();
    m_request.setFuture({});
    if (m_item.url.isEmpty()) {
        return;
    }
    const QFuture<QImage> future = ThumbnailService::shared().image(m_item, requestedSize);
    if (future.isFinished()) {
        // From memory: the very next frame shows it.
        receive(future);
    } else {
        m_request.setFuture(future);
    }
}

void ThumbnailImage::receive(const QFuture<QImage> &future) {
    if (future.isCanceled() || future.resultCount() == 0) {
        return;
    }
    const bool had = hasImage();
    m_source = future.result().convertToFormat(QImage::Format_RGB32);
    m_shown = {};
    polish();
    update();
    if (hasImage() != had) {
        Q_EMIT hasImageChanged();
    }
}

int ThumbnailImage::neededLevel() const {
    if (m_source.isNull() || width() < 1 || height() < 1) {
        return 0;
    }
    const double pixels = PixelGrid::ratioOf(*this);
    const double scale = std::min(width() * pixels / m_source.width(), height() * pixels / m_source.height());
    return std::max(0, int(std::floor(std::log2(1 / scale))));
}

void ThumbnailImage::updatePolish() {
    const int level = neededLevel();
    if (m_source.isNull() || (level == m_level && !m_shown.isNull())) {
        return;
    }
    m_shown = m_source;
    for (int i = 0; i < level; ++i) {
        m_shown = halved(m_shown);
    }
    m_level = level;
    m_textureStale = true;
    update();
}

void ThumbnailImage::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
    if (newGeometry.size() != oldGeometry.size()) {
        polish();
    }
}

void ThumbnailImage::itemChange(ItemChange change, const ItemChangeData &data) {
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        polish();
        update();
    }
    QQuickItem::itemChange(change, data);
}

QRectF ThumbnailImage::pictureRect() const {
    if (!hasImage()) {
        return {};
    }
    // The source's shape: halving rounds.
    const QSizeF size = QSizeF(m_source.size()).scaled(this->size(), Qt::KeepAspectRatio);
    return {QPointF((width() - size.width()) / 2, (height() - size.height()) / 2), size};
}

QSGNode *ThumbnailImage::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *) {
    auto *node = static_cast<QSGImageNode *>(oldNode);
    const QRectF rect = PixelGrid::snapped(*this, pictureRect());
    if (rect.isEmpty() || m_shown.isNull()) {
        delete node;
        return nullptr;
    }
    if (node == nullptr) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
        m_textureStale = true;
    }
    if (m_textureStale) {
        node->setTexture(window()->createTextureFromImage(m_shown, m_shown.hasAlphaChannel()
                                                                       ? QQuickWindow::TextureHasAlphaChannel
                                                                       : QQuickWindow::TextureIsOpaque));
        m_textureStale = false;
    }
    node->setRect(rect);
    return node;
}
