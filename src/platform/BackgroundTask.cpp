#include "BackgroundTask.h"

namespace BackgroundTask {

QThreadPool &pool() {
    // Never destroyed: the destructor would wait for a file system that does not answer.
    static QThreadPool *const instance = [] {
        auto *made = new QThreadPool;
        // Tasks mostly wait for the disk, and one that hangs must not hold up the next.
        made->setMaxThreadCount(16);
        return made;
    }();
    return *instance;
}

bool finish(std::chrono::milliseconds limit) {
    pool().clear();
    return pool().waitForDone(int(limit.count()));
}

} // namespace BackgroundTask
