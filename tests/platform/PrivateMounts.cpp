#include "PrivateMounts.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString &reason() {
    static QString text = QStringLiteral("the test did not ask for mounts of its own");
    return text;
}

bool writeFile(const char *path, const QByteArray &text) {
    const int fd = ::open(path, O_WRONLY | O_CLOEXEC);
    const bool written = fd >= 0 && ::write(fd, text.constData(), size_t(text.size())) == text.size();
    if (fd >= 0) {
        ::close(fd);
    }
    return written;
}

/// Everyone keeps their own numbers, so that files look the same inside.
bool enterUserNamespace() {
    const QByteArray user = QByteArray::number(::geteuid());
    const QByteArray group = QByteArray::number(::getegid());
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && writeFile("/proc/self/setgroups", "deny") &&
           writeFile("/proc/self/uid_map", user + ' ' + user + " 1") &&
           writeFile("/proc/self/gid_map", group + ' ' + group + " 1");
}

} // namespace

void PrivateMounts::enter() {
    const bool entered = (::geteuid() == 0 && ::unshare(CLONE_NEWNS) == 0) || enterUserNamespace();
    if (!entered || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        reason() = QStringLiteral("this machine forbids private mounts: ") +
                   QString::fromLocal8Bit(std::strerror(errno));
    } else {
        reason().clear();
    }
}

QString PrivateMounts::unavailable() {
    return reason();
}

MemoryMount::MemoryMount(QByteArray path, const QByteArray &options) : m_path(std::move(path)) {
    ::mkdir(m_path.constData(), 0755);
    m_mounted = ::mount("test", m_path.constData(), "tmpfs", 0, options.constData()) == 0;
}

MemoryMount::~MemoryMount() {
    if (m_mounted) {
        ::umount2(m_path.constData(), MNT_DETACH);
    }
    ::rmdir(m_path.constData());
}

bool MemoryMount::makeReadOnly() const {
    return ::mount(nullptr, m_path.constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}
