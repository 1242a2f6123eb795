#include "DirectoryTest.h"

#include "BackgroundTask.h"

#include <sys/stat.h>

namespace DirectoryTest {

QFuture<bool> isDirectory(const FileURL &url) {
    return BackgroundTask::run<bool>([path = url.nativePath()](QPromise<bool> &promise) {
        struct stat status {};
        promise.addResult(::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode));
    });
}

} // namespace DirectoryTest
