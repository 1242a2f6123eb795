#include "FullPhotoImage.h"

#include "AreaReducer.h"
#include "BackgroundTask.h"
#include "ImageDecoder.h"
#include "PictureCodec.h"
#include "PixelGrid.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGNode>
#include <QSGTexture>

#include <algorithm>
#include <utility>

using PhotoTiling::Tile;

namespace {

/// About a millisecond of upload each.
constexpr int tilesPerFrame = 4;
/// Of a mebibyte each.
constexpr qsizetype mostTiles = 128;

/// Returning hundreds of megabytes to the system takes longer than a frame: another thread does it.
void discard(QImage image) {
    constexpr qint64 large = 16 << 20;
    if (image.sizeInBytes() >= large) {
        BackgroundTask::run<bool>([kept = std::move(image)](QPromise<bool> &) mutable { kept = {}; });
    }
}

} // namespace

/// The fitted photo below, the tiles above it.
class FullPhotoImage::Node : public QSGNode {
public:
    explicit Node(QQuickWindow *window) : m_window(window), m_photo(make()) { appendChildNode(m_photo); }

    void setPhoto(const QImage &image) { setImage(m_photo, image); }
    void setRect(const QRectF &rect) { m_photo->setRect(rect); }
    void addTile(const Tile &tile, const QImage &image) {
        QSGImageNode *node = make();
        setImage(node, image);
        // Renderers look at the texture of what enters the tree.
        appendChildNode(node);
        m_tiles.insert(tile, node);
    }
    template <typename Predicate>
    void keepTiles(Predicate wanted) {
        m_tiles.removeIf([&](const auto &entry) {
            const bool leaves = !wanted(entry.key());
            if (leaves) {
                removeChildNode(entry.value());
                delete entry.value();
            }
            return leaves;
        });
    }
    template <typename Placement>
    void placeTiles(Placement placement) {
        for (auto it = m_tiles.cbegin(); it != m_tiles.cend(); ++it) {
            it.value()->setRect(placement(it.key()));
        }
    }

private:
    QSGImageNode *make() {
        QSGImageNode *node = m_window->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
        return node;
    }
    void setImage(QSGImageNode *node, const QImage &image) {
        node->setTexture(m_window->createTextureFromImage(image, QQuickWindow::TextureIsOpaque));
    }

    QQuickWindow *m_window;
    QSGImageNode *m_photo;
    QHash<Tile, QSGImageNode *> m_tiles;
};

FullPhotoImage::FullPhotoImage(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setClip(true);
    connect(&m_load, &QFutureWatcherBase::finished, this, [this] {
        if (!m_load.isCanceled() && m_load.future().resultCount() > 0) {
            m_photo = m_load.result();
            m_load.setFuture({});
            refresh();
        }
    });
    connect(&m_fitting, &QFutureWatcherBase::finished, this, [this] {
        if (m_fitting.isCanceled() || m_fitting.future().resultCount() == 0) {
            return;
        }
        const bool first = !isLoaded();
        m_fitted = m_fitting.result();
        m_fittedStale = true;
        if (first) {
            Q_EMIT loadedChanged();
        }
        refresh();
    });
    connect(&m_tileWork, &QFutureWatcherBase::finished, this, [this] {
        const std::optional<Tile> tile = std::exchange(m_tileInWork, std::nullopt);
        if (tile && m_wanted.contains(*tile)) {
            m_ready.insert(*tile, m_tileWork.result());
        }
        makeNextTile();
        // Also without a new tile: those of another zoom may have waited for this.
        update();
    });
}

FullPhotoImage::~FullPhotoImage() {
    reset();
}

void FullPhotoImage::reset() {
    for (QFutureWatcher<QImage> *watcher : {&m_load, &m_fitting, &m_tileWork}) {
        watcher->cancel();
        watcher->setFuture({});
    }
    m_wanted.clear();
    m_missing.clear();
    m_ready.clear();
    m_tileInWork.reset();
    m_fitted = {};
    m_fittedStale = true;
    discard(std::exchange(m_photo, {}));
}

void FullPhotoImage::setUrl(const FileURL &url) {
    if (m_url == url) {
        return;
    }
    const bool wasLoaded = isLoaded();
    reset();
    m_url = url;
    if (!url.isEmpty()) {
        m_load.setFuture(BackgroundTask::run<QImage>([url](QPromise<QImage> &promise) {
            const QImage image = ImageDecoder::image(url, ImageDecoder::fullImagePixels,
                                                     [&promise] { return promise.isCanceled(); });
            promise.addResult(PictureCodec::flattened(image, qRgb(0, 0, 0)));
        }));
    }
    update();
    Q_EMIT urlChanged();
    if (wasLoaded) {
        Q_EMIT loadedChanged();
    }
}

void FullPhotoImage::setZoom(double zoom) {
    if (m_zoom != zoom) {
        m_zoom = zoom;
        refresh();
        Q_EMIT viewChanged();
    }
}

void FullPhotoImage::setOffset(QPointF offset) {
    if (m_offset != offset) {
        m_offset = offset;
        refresh();
        Q_EMIT viewChanged();
    }
}

bool FullPhotoImage::isSharp() const {
    return isLoaded() && m_missing.isEmpty() && m_ready.isEmpty() && !m_tileInWork && !m_fitting.isRunning();
}

QRectF FullPhotoImage::photoRect() const {
    const QSizeF fitted = QSizeF(m_photo.size()).scaled(size(), Qt::KeepAspectRatio) * m_zoom;
    const QPointF middle = boundingRect().center() + m_offset;
    return {middle - QPointF(fitted.width() / 2, fitted.height() / 2), fitted};
}

QSize FullPhotoImage::fittedPixels() const {
    const QSizeF screen = size() * PixelGrid::ratioOf(*this);
    const QSize fitted = QSizeF(m_photo.size()).scaled(screen, Qt::KeepAspectRatio).toSize();
    // A photo smaller than the item is magnified by the graphics card.
    return fitted.boundedTo(m_photo.size()).expandedTo({1, 1});
}

void FullPhotoImage::refresh() {
    if (!m_photo.isNull() && width() >= 1 && height() >= 1) {
        fit();
        chooseTiles();
    }
    update();
}

void FullPhotoImage::fit() {
    const QSize pixels = fittedPixels();
    if (m_fitted.size() == pixels || m_fitting.isRunning()) {
        return;
    }
    m_fitting.setFuture(BackgroundTask::run<QImage>([photo = m_photo, pixels](QPromise<QImage> &promise) {
        promise.addResult(AreaReducer::reduce(photo, pixels));
    }));
}

void FullPhotoImage::chooseTiles() {
    const QRectF rect = photoRect();
    const double scale = rect.width() * PixelGrid::ratioOf(*this) / m_photo.width();
    QList<Tile> visible;
    if (isLoaded() && scale * m_photo.width() > m_fitted.width() + 1 && m_fitted.size() != m_photo.size()) {
        const double toPhoto = m_photo.width() / rect.width();
        const QRectF seen = boundingRect().translated(-rect.topLeft());
        visible = PhotoTiling::tiles(m_photo.size(), PhotoTiling::level(scale),
                                     {seen.topLeft() * toPhoto, seen.size() * toPhoto});
    }
    m_wanted = {visible.cbegin(), visible.cend()};
    m_ready.removeIf([this](const auto &entry) { return !m_wanted.contains(entry.key()); });
    visible.removeIf([this](const Tile &tile) {
        return m_drawn.contains(tile) || m_ready.contains(tile) || tile == m_tileInWork;
    });
    m_missing = visible;
    makeNextTile();
}

void FullPhotoImage::makeNextTile() {
    if (m_missing.isEmpty() || m_tileInWork) {
        return;
    }
    const Tile tile = m_missing.takeFirst();
    m_tileInWork = tile;
    const QRect part = PhotoTiling::sourceRect(tile, m_photo.size());
    const int level = tile.level;
    m_tileWork.setFuture(
        BackgroundTask::run<QImage>([photo = m_photo, part, level](QPromise<QImage> &promise) {
            const QSize pixels(std::max(1, part.width() >> level), std::max(1, part.height() >> level));
            promise.addResult(AreaReducer::reduce(photo.copy(part), pixels));
        }));
}

QRectF FullPhotoImage::onScreen(const QRect &part) const {
    const QRectF rect = photoRect();
    const double scale = rect.width() / m_photo.width();
    return {rect.topLeft() + QPointF(part.topLeft()) * scale, QSizeF(part.size()) * scale};
}

void FullPhotoImage::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    refresh();
}

void FullPhotoImage::itemChange(ItemChange change, const ItemChangeData &data) {
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        refresh();
    }
    QQuickItem::itemChange(change, data);
}

QSGNode *FullPhotoImage::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *) {
    auto *node = static_cast<Node *>(oldNode);
    if (!isLoaded() || width() < 1 || height() < 1) {
        m_drawn.clear();
        delete node;
        return nullptr;
    }
    if (node == nullptr) {
        m_drawn.clear();
        m_fittedStale = true;
        node = new Node(window());
    }
    if (m_fittedStale) {
        node->setPhoto(m_fitted);
        m_fittedStale = false;
    }
    const QRectF rect = photoRect();
    node->setRect(m_zoom == 1 ? PixelGrid::snapped(*this, rect) : rect);
    addTiles(*node);
    return node;
}

void FullPhotoImage::addTiles(Node &node) {
    for (int i = 0; i < tilesPerFrame && !m_ready.isEmpty(); ++i) {
        const auto tile = m_ready.begin();
        node.addTile(tile.key(), tile.value());
        m_drawn.insert(tile.key());
        m_ready.erase(tile);
    }
    // Those of another zoom stay until the new ones cover them, or there are too many.
    if (isSharp() || m_drawn.size() > mostTiles) {
        node.keepTiles([this](const Tile &tile) { return m_wanted.contains(tile); });
        m_drawn.intersect(m_wanted);
    }
    node.placeTiles(
        [this](const Tile &tile) { return onScreen(PhotoTiling::sourceRect(tile, m_photo.size())); });
    if (!m_ready.isEmpty()) {
        // Not from within the synchronisation, which would forget it.
        QMetaObject::invokeMethod(this, &QQuickItem::update, Qt::QueuedConnection);
    }
}
