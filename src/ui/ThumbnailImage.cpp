#include "ThumbnailImage.h"

#include "PixelGrid.h"
#include "ThumbnailService.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>
#include <QSGTexture>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

/// The backing and, above it, the picture, each there only while it can be seen. It transforms nothing, but
/// Qt's software renderer places what is added later only below nodes of that kind.
struct ThumbnailNode : QSGTransformNode {
    std::unique_ptr<QSGRectangleNode> backing;
    std::unique_ptr<QSGImageNode> picture;
};

/// Each pixel the mean of four, which thumbnails of 32 bits allow without conversion; an odd last row or
/// column is left out. Fast enough for a page of them between two frames.
QImage halved(const QImage &image) {
    constexpr quint32 evenBytes = 0x00FF00FF;
    constexpr quint32 rounding = 0x00020002;
    const int width = std::max(1, image.width() / 2);
    QImage result(width, std::max(1, image.height() / 2), image.format());
    const size_t right = image.width() > 1 ? 1 : 0;
    const int below = image.height() > 1 ? 1 : 0;
    for (int y = 0; y < result.height(); ++y) {
        const auto *upper = reinterpret_cast<const quint32 *>(image.constScanLine(2 * y));
        const auto *lower = reinterpret_cast<const quint32 *>(image.constScanLine(2 * y + below));
        auto *target = reinterpret_cast<quint32 *>(result.scanLine(y));
        for (size_t x = 0; x < size_t(width); ++x) {
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

void ThumbnailImage::setBacking(const QColor &colour) {
    if (m_backing != colour) {
        m_backing = colour;
        update();
        Q_EMIT backingChanged();
    }
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
    auto *node = oldNode != nullptr ? static_cast<ThumbnailNode *>(oldNode) : new ThumbnailNode;
    const QRectF whole = PixelGrid::snapped(*this, boundingRect());
    const QRectF rect = PixelGrid::snapped(*this, pictureRect());
    const bool hasPicture = !rect.isEmpty() && !m_shown.isNull();
    if (!hasPicture) {
        node->picture.reset();
    } else {
        if (!node->picture) {
            node->picture.reset(window()->createImageNode());
            node->picture->setFlag(QSGNode::OwnedByParent, false);
            node->picture->setOwnsTexture(true);
            node->picture->setFiltering(QSGTexture::Linear);
            m_textureStale = true;
        }
        if (m_textureStale) {
            node->picture->setTexture(
                window()->createTextureFromImage(m_shown, QQuickWindow::TextureIsOpaque));
            m_textureStale = false;
        }
        node->picture->setRect(rect);
        // Only now that it has a texture: Qt's software renderer looks at once.
        if (node->picture->parent() == nullptr) {
            node->appendChildNode(node->picture.get());
        }
    }

    // Under a picture that fills the item it would only be drawn in vain.
    const bool hasBacking =
        m_backing.alpha() > 0 && !whole.isEmpty() && !(hasPicture && rect.contains(whole));
    if (!hasBacking) {
        node->backing.reset();
    } else if (!node->backing) {
        node->backing.reset(window()->createRectangleNode());
        node->backing->setFlag(QSGNode::OwnedByParent, false);
        node->prependChildNode(node->backing.get());
    }
    if (hasBacking) {
        node->backing->setRect(whole);
        node->backing->setColor(m_backing);
    }
    return node;
}
