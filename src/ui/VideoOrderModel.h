#pragma once

#include "StatePointer.h"

#include <QAbstractListModel>

/// The folder's videos in browse order, with the roles "videoId" and "name". A video that is moved keeps its
/// row as a moved one. Main thread.
class VideoOrderModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(AppState *state READ state WRITE setState NOTIFY stateChanged REQUIRED)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { IdRole = Qt::UserRole, NameRole };

    using QAbstractListModel::QAbstractListModel;

    AppState *state() const { return m_state; }
    void setState(AppState *state);
    int count() const { return int(m_videos.size()); }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void stateChanged();
    void countChanged();

private:
    void update();

    StatePointer m_state;
    QList<MediaFile> m_videos;
};
