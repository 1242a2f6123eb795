#include "VideoOrderModel.h"

#include <algorithm>
#include <optional>

namespace {

struct Move {
    int from = 0;
    /// Counts rows before the removal.
    int destination = 0;
};

/// The one move that makes the new order of the old; none when it takes more than one.
std::optional<Move> singleMove(const QList<MediaFile> &before, const QList<MediaFile> &after) {
    if (before.size() != after.size()) {
        return std::nullopt;
    }
    const auto sameFile = [](const MediaFile &a, const MediaFile &b) { return a.url == b.url; };
    const auto first = std::mismatch(before.begin(), before.end(), after.begin(), sameFile);
    if (first.first == before.end()) {
        return Move{};
    }
    const auto last = std::mismatch(before.rbegin(), before.rend(), after.rbegin(), sameFile);
    const auto begin = first.first - before.begin();
    const auto end = before.size() - (last.first - before.rbegin());
    // Between begin and end the files have gone round by one place, one way or the other.
    const auto turned = [&](const QList<MediaFile> &a, const QList<MediaFile> &b) {
        return a[begin].url == b[end - 1].url &&
               std::equal(a.begin() + begin + 1, a.begin() + end, b.begin() + begin, sameFile);
    };
    if (turned(before, after)) {
        return Move{.from = int(begin), .destination = int(end)};
    }
    if (turned(after, before)) {
        return Move{.from = int(end - 1), .destination = int(begin)};
    }
    return std::nullopt;
}

} // namespace

void VideoOrderModel::setState(AppState *state) {
    if (!m_state.replace(state, this)) {
        return;
    }
    if (m_state) {
        connect(m_state, &AppState::videosChanged, this, &VideoOrderModel::update);
    }
    Q_EMIT stateChanged();
    update();
}

int VideoOrderModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant VideoOrderModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const FileURL &url = m_videos[index.row()].url;
    return role == IdRole ? url.path() : role == NameRole ? url.lastPathComponent() : QVariant();
}

QHash<int, QByteArray> VideoOrderModel::roleNames() const {
    return {{IdRole, "videoId"}, {NameRole, "name"}};
}

void VideoOrderModel::update() {
    const QList<MediaFile> videos = m_state ? m_state->videos() : QList<MediaFile>();
    const auto move = singleMove(m_videos, videos);
    if (!move) {
        beginResetModel();
        m_videos = videos;
        endResetModel();
        Q_EMIT countChanged();
        return;
    }
    if (move->from == move->destination) {
        m_videos = videos;
        return;
    }
    beginMoveRows({}, move->from, move->from, {}, move->destination);
    m_videos = videos;
    endMoveRows();
}
