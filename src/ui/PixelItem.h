#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

/// An item that shows a picture it draws itself, for the screen's own pixels and on whole ones. The picture
/// is drawn anew when what it shows, its size or the screen changes.
class PixelItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit PixelItem(QQuickItem *parent = nullptr);

Q_SIGNALS:
    /// Something that the picture shows.
    void changed();

protected:
    /// The size in points of the picture that is stretched over an item of the given size by the pixels in
    /// its middle; the item's own where there is nothing to stretch.
    virtual QSizeF pictureSize(QSizeF itemSize) const { return itemSize; }
    /// By how many points the picture goes beyond the item on every side.
    virtual double margin() const { return 0; }
    /// Draws the picture onto a transparent image. The rectangle, in pixels, is the picture without its
    /// margin.
    virtual void draw(QImage &image, const QRectF &rect, double ratio) const = 0;

    /// The new value of a field that the picture shows.
    template <typename Value>
    void set(Value &field, const Value &value) {
        if (field == value) {
            return;
        }
        field = value;
        m_stale = true;
        update();
        Q_EMIT changed();
    }

    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    QImage picture(QSizeF points, double ratio) const;

    bool m_stale = true;
    QSizeF m_drawnPoints;
    double m_drawnRatio = 0;
};
