#pragma once

#include "MediaFile.h"

#include <QColor>
#include <QFutureWatcher>
#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

/// The thumbnail of one media file, whole and centred in the item, its aspect ratio kept, on a backing that
/// fills the item.
///
/// Asks the shared service when it is complete and again when the file's path changes; the old picture stays
/// until the new result, which may be nothing, has arrived, unless it is told to go at once. The request is
/// withdrawn when the item goes away.
class ThumbnailImage : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(MediaFile item READ item WRITE setItem NOTIFY itemChanged)
    Q_PROPERTY(QColor backing READ backing WRITE setBacking NOTIFY backingChanged)
    /// A picture stays when the file changes, until the next one is there. True by default.
    Q_PROPERTY(bool keepsOldPicture MEMBER m_keepsOldPicture)
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY hasImageChanged)

public:
    /// In pixels.
    static constexpr int requestedSize = 720;

    explicit ThumbnailImage(QQuickItem *parent = nullptr);
    ~ThumbnailImage() override;

    const MediaFile &item() const { return m_item; }
    void setItem(const MediaFile &item);
    QColor backing() const { return m_backing; }
    void setBacking(const QColor &colour);
    bool hasImage() const { return !m_source.isNull(); }
    /// Where the picture is drawn, in item coordinates; empty without one.
    QRectF pictureRect() const;

Q_SIGNALS:
    void itemChanged();
    void backingChanged();
    void hasImageChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;

private:
    void request();
    void receive(const QFuture<QImage> &future);
    void show(const QImage &image);
    /// A texture that is reduced by more than half while it is drawn flickers and looks grainy.
    int neededHalvings() const;

    MediaFile m_item;
    QColor m_backing = Qt::transparent;
    bool m_keepsOldPicture = true;
    /// As the service made it.
    QImage m_source;
    bool m_textureStale = false;
    QFutureWatcher<QImage> m_request;
};
