#pragma once

#include <QFutureWatcher>

#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

/// Calls callback(future) on the owner's thread once the future has finished, failed or been cancelled.
/// Dropped without a call when the owner goes first.
template <typename Result, typename Callback>
void whenFinished(QObject *owner, const QFuture<Result> &future, Callback &&callback) {
    auto *watcher = new QFutureWatcher<Result>(owner);
    QObject::connect(watcher, &QFutureWatcherBase::finished, owner,
                     [watcher, callback = std::forward<Callback>(callback)]() mutable {
                         watcher->deleteLater();
                         callback(watcher->future());
                     });
    watcher->setFuture(future);
}

/// The result of a finished future; none when it was cancelled. Throws what the future failed with.
template <typename Result>
std::optional<Result> finishedResult(QFuture<Result> future) {
    if (future.resultCount() > 0) {
        return future.result();
    }
    future.waitForFinished(); // Is finished: this only throws.
    return std::nullopt;
}

/// The same for futures that have nothing to tell by failing: the fallback stands for a failure, too.
template <typename Result>
Result finishedResultOr(const QFuture<Result> &future, const std::type_identity_t<Result> &fallback) {
    try {
        return finishedResult(future).value_or(fallback);
    } catch (const std::exception &) {
        return fallback;
    }
}
