#pragma once

#include "FileURL.h"
#include "PhotoTiling.h"

#include <QFutureWatcher>
#include <QImage>
#include <QPointF>
#include <QQuickItem>
#include <QSet>
#include <QtQml/qqmlregistration.h>

#include <optional>

/// One photo, fitted to the item, magnified about the item's middle and moved. Sharp at every zoom.
///
/// The file is decoded in the background. The fitted picture is one texture of the screen's own resolution;
/// what is magnified beyond it is cut into tiles, made in the background while they are visible and handed to
/// the graphics card a few a frame, so that neither its texture size nor its bandwidth limits the photo.
/// Pictures with alpha are put on black.
class FullPhotoImage : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(FileURL url READ url WRITE setUrl NOTIFY urlChanged)
    /// 1 shows the photo fitted to the item.
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY viewChanged)
    /// How far the photo is moved, in the item's coordinates.
    Q_PROPERTY(QPointF offset READ offset WRITE setOffset NOTIFY viewChanged)
    /// Whether there is a picture to be seen. Stays false for a file that cannot be read.
    Q_PROPERTY(bool loaded READ isLoaded NOTIFY loadedChanged)
    /// Of the photo upright, in pixels; empty until it is loaded.
    Q_PROPERTY(QSize naturalSize READ naturalSize NOTIFY loadedChanged)

public:
    explicit FullPhotoImage(QQuickItem *parent = nullptr);
    ~FullPhotoImage() override;

    const FileURL &url() const { return m_url; }
    void setUrl(const FileURL &url);
    double zoom() const { return m_zoom; }
    void setZoom(double zoom);
    QPointF offset() const { return m_offset; }
    void setOffset(QPointF offset);
    bool isLoaded() const { return !m_fitted.isNull(); }
    QSize naturalSize() const { return isLoaded() ? m_photo.size() : QSize(); }
    /// Where the photo is drawn, in item coordinates.
    QRectF photoRect() const;
    /// Whether all that is visible is as sharp as the photo and the screen allow.
    bool isSharp() const;

Q_SIGNALS:
    void urlChanged();
    void viewChanged();
    void loadedChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;

private:
    class Node;

    void reset();
    /// Brings the fitted picture and the tiles up to the item's size and view.
    void refresh();
    void fit();
    void chooseTiles();
    void makeNextTile();
    void addTiles(Node &node);
    QSize fittedPixels() const;
    QRectF onScreen(const QRect &part) const;

    FileURL m_url;
    double m_zoom = 1;
    QPointF m_offset;

    QImage m_photo;
    QFutureWatcher<QImage> m_load;
    /// The whole photo in the screen's resolution at zoom 1.
    QImage m_fitted;
    bool m_fittedStale = false;
    QFutureWatcher<QImage> m_fitting;

    /// The tiles that belong on the screen, and of these the ones that are still to be made and those made
    /// but not yet handed over.
    QSet<PhotoTiling::Tile> m_wanted;
    QList<PhotoTiling::Tile> m_missing;
    QHash<PhotoTiling::Tile, QImage> m_ready;
    std::optional<PhotoTiling::Tile> m_tileInWork;
    QFutureWatcher<QImage> m_tileWork;
    /// Those that the scene graph holds.
    QSet<PhotoTiling::Tile> m_drawn;
};
