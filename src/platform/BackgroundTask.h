#pragma once

#include <QFuture>
#include <QPromise>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <chrono>

/// Where blocking work on the user's files runs: one pool for the program, owned by this namespace from the
/// first task until finish().
namespace BackgroundTask {

QThreadPool &pool();

/// Runs work(promise) on the pool. The work looks at promise.isCanceled() where it can stop; what it throws
/// (a QException) arrives at the future.
template <typename Result, typename Work>
QFuture<Result> run(Work &&work) {
    return QtConcurrent::run(
        &pool(), [work = std::forward<Work>(work)](QPromise<Result> &promise) mutable { work(promise); });
}

/// Waits at the end of the program for running tasks, after their owners cancelled them. False when some file
/// system did not answer in time; the caller then ends the process without unwinding those threads.
bool finish(std::chrono::milliseconds limit);

} // namespace BackgroundTask
