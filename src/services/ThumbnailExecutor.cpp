#include "ThumbnailExecutor.h"

#include "PictureCodec.h"
#include "ThumbnailDiskCache.h"

#include <algorithm>
#include <iterator>

#include <sys/resource.h>

namespace {

/// Steps of the scheduler's niceness, each about a tenth of the processor, by which the decoders let the
/// threads go first that answer the user and draw.
constexpr int politeness = 5;

/// With so many files hanging at once the service waits for one of them, so that a dead file system does not
/// cost a thread per picture.
constexpr size_t mostJobs = 16;

/// JPEG knows no alpha: such a picture is put on the colour that it is shown on, so that it looks the same
/// from the disk as when it was made.
constexpr QRgb darkLayer = qRgb(4, 4, 5);

} // namespace

ThumbnailService::Executor::Executor(Settings settings) : m_settings(std::move(settings)) {
    m_pool->setMaxThreadCount(int(mostJobs) + 1);
    m_pool->setExpiryTimeout(-1);
    m_thread = std::thread([this] { run(); });
}

ThumbnailService::Executor::~Executor() {
    finish(std::chrono::milliseconds(0));
}

QFuture<QImage> ThumbnailService::Executor::request(const MediaFile &file, int maxPixelSize) {
    Promise promise;
    promise.start();
    QFuture<QImage> future = promise.future();
    {
        const std::scoped_lock lock(m_mailbox->mutex);
        if (m_mailbox->stopping) {
            // Its destructor cancels the promise.
            return future;
        }
        const QImage image = m_memory.image(file.url.nativePath());
        if (!image.isNull()) {
            promise.addResult(image);
            promise.finish();
            return future;
        }
        m_mailbox->requests.push_back({file, maxPixelSize, std::move(promise)});
    }
    m_mailbox->filled.notify_one();
    return future;
}

void ThumbnailService::Executor::prefetch(const QList<MediaFile> &files, int maxPixelSize) {
    std::deque<Request> requests;
    for (const MediaFile &file : files) {
        requests.push_back({file, maxPixelSize, std::nullopt});
    }
    {
        const std::scoped_lock lock(m_mailbox->mutex);
        m_mailbox->prefetch = std::move(requests);
    }
    m_mailbox->filled.notify_one();
}

bool ThumbnailService::Executor::finish(std::chrono::milliseconds limit) {
    if (m_thread.joinable()) {
        {
            const std::scoped_lock lock(m_mailbox->mutex);
            m_mailbox->stopping = true;
        }
        m_mailbox->filled.notify_one();
        m_thread.join();
    }
    if (m_pool != nullptr && !m_pool->waitForDone(int(limit.count()))) {
        // The pool's destructor would wait for the thread that hangs.
        m_leftBehind = m_pool.release();
    }
    m_pool.reset();
    return m_leftBehind == nullptr;
}

void ThumbnailService::Executor::run() {
    // The first job readies the directory; requests wait for it like for any other.
    const quint64 preparation = begin({});
    m_pool->start([cache = ThumbnailDiskCache(m_settings.cacheDirectory), mailbox = m_mailbox, preparation] {
        cache.prepare();
        const std::scoped_lock lock(mailbox->mutex);
        mailbox->results.push_back({preparation, {}});
        mailbox->filled.notify_one();
    });
    while (receive()) {
        stepAside();
        next();
    }
    m_waiting.clear();
    m_idle.clear();
    m_jobs.clear();
}

bool ThumbnailService::Executor::receive() {
    std::deque<Request> requests;
    std::deque<Result> results;
    {
        std::unique_lock lock(m_mailbox->mutex);
        const auto filled = [this] { return !m_mailbox->isEmpty(); };
        if (m_current && m_jobs.size() < mostJobs) {
            m_mailbox->filled.wait_until(lock, current()->deadline, filled);
        } else {
            m_mailbox->filled.wait(lock, filled);
        }
        if (m_mailbox->stopping) {
            m_mailbox->requests.clear();
            return false;
        }
        requests.swap(m_mailbox->requests);
        results.swap(m_mailbox->results);
        if (m_mailbox->prefetch) {
            m_idle = std::move(*m_mailbox->prefetch);
            m_mailbox->prefetch.reset();
        }
    }
    for (Result &result : results) {
        complete(result);
    }
    std::move(requests.begin(), requests.end(), std::back_inserter(m_waiting));
    return true;
}

void ThumbnailService::Executor::complete(const Result &result) {
    const auto found = m_jobs.find(result.job);
    if (found == m_jobs.end()) {
        return;
    }
    Job job = std::move(found->second);
    m_jobs.erase(found);
    if (m_current == result.job) {
        m_current.reset();
    }
    if (!result.image.isNull()) {
        m_memory.insert(job.path, result.image);
    }
    for (Promise &promise : job.promises) {
        promise.addResult(result.image);
        promise.finish();
    }
}

void ThumbnailService::Executor::stepAside() {
    if (!m_current || m_jobs.size() >= mostJobs) {
        return;
    }
    const bool inTheWay = current()->idle && !m_waiting.empty();
    if (inTheWay || Clock::now() >= current()->deadline) {
        m_current.reset();
    }
}

void ThumbnailService::Executor::next() {
    while (!m_current && !m_waiting.empty()) {
        Request request = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (request.promise->isCanceled()) {
            continue;
        }
        const QImage image = m_memory.image(request.file.url.nativePath());
        if (!image.isNull()) {
            request.promise->addResult(image);
            request.promise->finish();
        } else if (!attach(request)) {
            start(std::move(request));
        }
    }
    // Nothing is prepared beside a job that hangs, lest more of them do.
    while (m_jobs.empty() && !m_idle.empty()) {
        Request request = std::move(m_idle.front());
        m_idle.pop_front();
        if (!m_memory.contains(request.file.url.nativePath())) {
            start(std::move(request));
        }
    }
}

bool ThumbnailService::Executor::attach(Request &request) {
    const auto found = std::find_if(m_jobs.begin(), m_jobs.end(), [&](const auto &entry) {
        return entry.second.path == request.file.url.nativePath();
    });
    if (found == m_jobs.end()) {
        return false;
    }
    found->second.promises.push_back(std::move(*request.promise));
    return true;
}

void ThumbnailService::Executor::start(Request request) {
    Job job{.path = request.file.url.nativePath(), .promises = {}, .idle = !request.promise, .deadline = {}};
    if (request.promise) {
        job.promises.push_back(std::move(*request.promise));
    }
    const quint64 id = begin(std::move(job));
    m_pool->start([file = request.file, maxPixelSize = request.maxPixelSize, generate = m_settings.generate,
                   cache = ThumbnailDiskCache(m_settings.cacheDirectory), mailbox = m_mailbox, id] {
        // The thread's alone on Linux, and for good.
        ::setpriority(PRIO_PROCESS, 0, politeness);
        QImage image = cache.read(file.url);
        const bool made = image.isNull();
        if (made) {
            image = PictureCodec::flattened(generate(file, maxPixelSize), darkLayer);
        }
        {
            const std::scoped_lock lock(mailbox->mutex);
            mailbox->results.push_back({id, image});
            mailbox->filled.notify_one();
        }
        if (made && !image.isNull()) {
            cache.write(file.url, image);
        }
    });
}

quint64 ThumbnailService::Executor::begin(Job job) {
    const quint64 id = m_nextJob++;
    job.deadline = Clock::now() + m_settings.patience;
    m_jobs.emplace(id, std::move(job));
    m_current = id;
    return id;
}

ThumbnailService::Executor::Job *ThumbnailService::Executor::current() {
    return &m_jobs.at(*m_current);
}
