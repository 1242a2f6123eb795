#include "ThumbnailImage.h"

#include "AreaReducer.h"
#include "BackgroundTask.h"
#include "PixelGrid.h"
#include "ThumbnailService.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGTexture>

#include <algorithm>
#include <cmath>

namespace {

QSize halved(QSize size, int times) {
    return {std::max(1, size.width() >> times), std::max(1, size.height() >> times)};
}

} // namespace

ThumbnailImage::ThumbnailImage(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(&m_request, &QFutureWatcherBase::finished, this, &ThumbnailImage::receive);
    connect(&m_reduction, &QFutureWatcherBase::finished, this, [this] {
        if (!m_reduction.isCanceled()) {
            show(m_reduction.result(), m_reductionLevel);
        }
    });
}

ThumbnailImage::~ThumbnailImage() {
    m_request.cancel();
    m_reduction.cancel();
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
    if (m_item.url.isEmpty()) {
        m_request.setFuture({});
        return;
    }
    m_request.setFuture(ThumbnailService::shared().image(m_item, requestedSize));
}

void ThumbnailImage::receive() {
    if (m_request.isCanceled() || m_request.future().resultCount() == 0) {
        return;
    }
    m_reduction.cancel();
    m_source = m_request.result();
    const int level = neededLevel();
    if (m_source.isNull() || level == 0) {
        show(m_source, 0);
    } else {
        // What is shown belongs to the file before.
        m_level = -1;
        chooseLevel();
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

void ThumbnailImage::chooseLevel() {
    const int level = neededLevel();
    if (m_source.isNull() || level == m_level) {
        return;
    }
    m_reduction.cancel();
    if (level == 0) {
        show(m_source, 0);
        return;
    }
    m_reductionLevel = level;
    m_reduction.setFuture(BackgroundTask::run<QImage>([source = m_source, level](QPromise<QImage> &promise) {
        if (!promise.isCanceled()) {
            promise.addResult(AreaReducer::reduce(source, halved(source.size(), level)));
        }
    }));
}

void ThumbnailImage::show(const QImage &image, int level) {
    const bool had = hasImage();
    m_shown = image;
    m_level = level;
    m_textureStale = true;
    update();
    if (hasImage() != had) {
        Q_EMIT hasImageChanged();
    }
}

void ThumbnailImage::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
    if (newGeometry.size() != oldGeometry.size()) {
        chooseLevel();
    }
}

void ThumbnailImage::itemChange(ItemChange change, const ItemChangeData &data) {
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        chooseLevel();
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
    if (rect.isEmpty()) {
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
