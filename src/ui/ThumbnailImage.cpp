#include "ThumbnailImage.h"

#include "HalvedTexture.h"
#include "PixelGrid.h"
#include "ThumbnailService.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>
#include <QSGRendererInterface>
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
    /// How often the picture's texture was halved.
    int halvings = 0;
};

/// The picture halved so many times. Qt's software renderer takes only textures of its own making.
QSGTexture *makeTexture(QQuickWindow &window, const QImage &image, int halvings) {
    if (halvings == 0) {
        return window.createTextureFromImage(image, QQuickWindow::TextureIsOpaque);
    }
    if (window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software) {
        return window.createTextureFromImage(HalvedTexture::halved(image, halvings),
                                             QQuickWindow::TextureIsOpaque);
    }
    return new HalvedTexture(window, image, halvings);
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
        return;
    }
    m_request.setFuture(future);
    if (!m_keepsOldPicture) {
        show({});
    }
}

void ThumbnailImage::receive(const QFuture<QImage> &future) {
    if (future.isCanceled() || future.resultCount() == 0) {
        return;
    }
    show(future.result().convertToFormat(QImage::Format_RGB32));
}

void ThumbnailImage::show(const QImage &image) {
    const bool had = hasImage();
    m_source = image;
    m_textureStale = true;
    update();
    if (hasImage() != had) {
        Q_EMIT hasImageChanged();
    }
}

int ThumbnailImage::neededHalvings() const {
    if (m_source.isNull() || width() < 1 || height() < 1) {
        return 0;
    }
    const double pixels = PixelGrid::ratioOf(*this);
    const double scale = std::min(width() * pixels / m_source.width(), height() * pixels / m_source.height());
    return std::max(0, int(std::floor(std::log2(1 / scale))));
}

void ThumbnailImage::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

void ThumbnailImage::itemChange(ItemChange change, const ItemChangeData &data) {
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
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
    const bool hasPicture = !rect.isEmpty();
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
        const int halvings = neededHalvings();
        if (m_textureStale || halvings != node->halvings) {
            node->picture->setTexture(makeTexture(*window(), m_source, halvings));
            node->halvings = halvings;
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
