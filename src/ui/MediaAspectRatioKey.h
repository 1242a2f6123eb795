#pragma once

#include "JustifiedGridLayout.h"

#include <QObject>
#include <QtQml/qqml.h>

/// Attached to a cell of a JustifiedGrid: the cell's width divided by its height.
class MediaAspectRatioKey : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("attached to the cells of a JustifiedGrid")
    QML_ATTACHED(MediaAspectRatioKey)
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged)

public:
    static MediaAspectRatioKey *qmlAttachedProperties(QObject *cell) { return new MediaAspectRatioKey(cell); }
    /// The cell's, or the default of a cell that states none.
    static double valueOf(QObject *cell);

    double value() const { return m_value; }
    void setValue(double value);

Q_SIGNALS:
    void valueChanged();

private:
    explicit MediaAspectRatioKey(QObject *cell) : QObject(cell) {}

    double m_value = JustifiedGridLayout::defaultAspectRatio;
};
