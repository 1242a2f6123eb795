#pragma once

#include "ThumbnailMemoryCache.h"
#include "ThumbnailService.h"

#include <QPromise>
#include <QThreadPool>

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

/// The service's own thread. It decides and remembers, and never touches a file: that is done by jobs on a
/// pool, normally one at a time, so that a file that hangs cannot take the service along.
///
/// Only the mailbox and the pictures in memory are shared between threads; everything else belongs to the
/// service's thread.
class ThumbnailService::Executor {
public:
    explicit Executor(Settings settings);
    ~Executor();

    QFuture<QImage> request(const MediaFile &file, int maxPixelSize);
    void prefetch(const QList<MediaFile> &files, int maxPixelSize);
    bool finish(std::chrono::milliseconds limit);

private:
    using Clock = std::chrono::steady_clock;
    using Promise = QPromise<QImage>;

    struct Request {
        MediaFile file;
        int maxPixelSize = 0;
        /// None for what is prepared while idle.
        std::optional<Promise> promise;
    };

    struct Result {
        quint64 job;
        QImage image;
    };

    /// What the other threads leave for the service's thread. Jobs hold on to it, so that one that outlives
    /// the service still finds it.
    struct Mailbox {
        std::mutex mutex;
        std::condition_variable filled;
        std::deque<Request> requests;
        std::optional<std::deque<Request>> prefetch;
        std::deque<Result> results;
        bool stopping = false;

        bool isEmpty() const { return requests.empty() && !prefetch && results.empty() && !stopping; }
    };

    struct Job {
        /// Path of the file; empty for the preparation of the disk cache.
        QByteArray path;
        std::vector<Promise> promises;
        bool idle = false;
        Clock::time_point deadline;
    };

    void run();
    /// Moves the mailbox's content over. False when the service is to end.
    bool receive();
    void complete(const Result &result);
    void next();
    /// Lets the others pass a job that takes too long, or an idle one that is in the way.
    void stepAside();
    bool attach(Request &request);
    void start(Request request);
    quint64 begin(Job job);
    Job *current();

    const Settings m_settings;
    std::shared_ptr<Mailbox> m_mailbox = std::make_shared<Mailbox>();
    std::unique_ptr<QThreadPool> m_pool = std::make_unique<QThreadPool>();
    /// The pool, when one of its threads still hung at the end.
    const QThreadPool *m_leftBehind = nullptr;

    ThumbnailMemoryCache m_memory;
    std::deque<Request> m_waiting;
    std::deque<Request> m_idle;
    /// All that run, the current one included.
    std::map<quint64, Job> m_jobs;
    /// The job that the others wait for.
    std::optional<quint64> m_current;
    quint64 m_nextJob = 1;

    /// Declared last: it uses all of the above.
    std::thread m_thread;
};
