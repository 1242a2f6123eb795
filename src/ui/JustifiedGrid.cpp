#include "JustifiedGrid.h"

#include "MediaAspectRatioKey.h"

#include <QQuickWindow>

#include <cmath>

JustifiedGrid::JustifiedGrid(QQuickItem *parent) : QQuickItem(parent) {
    // It draws nothing, but may ask for a frame.
    setFlag(ItemHasContents);
}

void JustifiedGrid::setSpacing(double spacing) {
    if (m_layout.spacing != spacing) {
        m_layout.spacing = spacing;
        Q_EMIT spacingChanged();
        polish();
    }
}

void JustifiedGrid::setTargetHeight(double height) {
    if (m_layout.targetHeight != height) {
        m_layout.targetHeight = height;
        Q_EMIT targetHeightChanged();
        polish();
    }
}

void JustifiedGrid::setModel(QAbstractItemModel *model) {
    if (m_model == model) {
        return;
    }
    if (m_model) {
        m_model->disconnect(this);
    }
    m_model = model;
    if (m_model) {
        connect(m_model, &QAbstractItemModel::rowsMoved, this, &QQuickItem::polish);
    }
    Q_EMIT modelChanged();
    polish();
}

void JustifiedGrid::componentComplete() {
    QQuickItem::componentComplete();
    polish();
}

void JustifiedGrid::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.width() != oldGeometry.width()) {
        polish();
    }
}

void JustifiedGrid::itemChange(ItemChange change, const ItemChangeData &data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemChildAddedChange || change == ItemChildRemovedChange || change == ItemSceneChange ||
        change == ItemDevicePixelRatioHasChanged) {
        polish();
    }
}

void JustifiedGrid::updatePolish() {
    QList<QQuickItem *> cells = childItems();
    // A Repeater is a child like the cells that it makes.
    cells.removeIf([](const QQuickItem *child) { return child->inherits("QQuickRepeater"); });
    std::vector<double> ratios;
    ratios.reserve(size_t(cells.size()));
    for (QQuickItem *cell : cells) {
        ratios.push_back(MediaAspectRatioKey::valueOf(cell));
    }
    const std::vector<QRectF> frames = m_layout.frames(ratios, width());
    bool moved = false;
    for (size_t i = 0; i < frames.size(); ++i) {
        const QRectF frame = aligned(frames[i]);
        QQuickItem *cell = cells[qsizetype(i)];
        moved = moved || frame != QRectF(cell->position(), cell->size());
        cell->setPosition(frame.topLeft());
        cell->setSize(frame.size());
    }
    if (moved) {
        // A frame begins with a look at what is under a resting pointer, if anything has changed since the
        // last one; what changes here, later in the frame, does not count. The next frame has to look again.
        QMetaObject::invokeMethod(this, &QQuickItem::update, Qt::QueuedConnection);
    }
    setImplicitHeight(frames.empty() ? 0 : frames.back().bottom());
}

/// Rounds the edges, not the lengths: a whole spacing stays what it is, and a row ends where it should.
QRectF JustifiedGrid::aligned(const QRectF &frame) const {
    const double scale = window() == nullptr ? 1 : window()->effectiveDevicePixelRatio();
    const auto snap = [scale](double edge) { return std::round(edge * scale) / scale; };
    return {QPointF(snap(frame.left()), snap(frame.top())),
            QPointF(snap(frame.right()), snap(frame.bottom()))};
}
