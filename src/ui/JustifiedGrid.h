#pragma once

#include "JustifiedGridLayout.h"

#include <QAbstractItemModel>
#include <QPointer>
#include <QQuickItem>

/// Lays its children out in justified rows, in their order, each at the ratio that its MediaAspectRatioKey
/// states. Edges fall on device pixels. The implicit height is that of the rows.
class JustifiedGrid : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double spacing READ spacing WRITE setSpacing NOTIFY spacingChanged)
    Q_PROPERTY(double targetHeight READ targetHeight WRITE setTargetHeight NOTIFY targetHeightChanged)
    /// The model of the Repeater that makes the children. A row that moves in it moves its child among the
    /// others, of which an item learns nothing by itself.
    Q_PROPERTY(QAbstractItemModel *model READ model WRITE setModel NOTIFY modelChanged)

public:
    explicit JustifiedGrid(QQuickItem *parent = nullptr);

    double spacing() const { return m_layout.spacing; }
    void setSpacing(double spacing);
    double targetHeight() const { return m_layout.targetHeight; }
    void setTargetHeight(double height);
    QAbstractItemModel *model() const { return m_model; }
    void setModel(QAbstractItemModel *model);

    /// Does now what otherwise happens before the next frame.
    Q_INVOKABLE void forceLayout() { updatePolish(); }

Q_SIGNALS:
    void spacingChanged();
    void targetHeightChanged();
    void modelChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void updatePolish() override;

private:
    QRectF aligned(const QRectF &frame) const;

    JustifiedGridLayout m_layout{.spacing = 6, .targetHeight = 245};
    QPointer<QAbstractItemModel> m_model;
};
