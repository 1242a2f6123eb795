#include "MessageBuses.h"

#include "FileDescriptor.h"

#include <QByteArray>
#include <QList>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace MessageBuses {
namespace {

QByteArray sessionAddress() {
    const QByteArray given = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    return given.isEmpty() && !runtime.isEmpty() ? "unix:path=" + runtime + "/bus" : given;
}

QByteArray systemAddress() {
    const QByteArray given = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    return given.isEmpty() ? QByteArrayLiteral("unix:path=/run/dbus/system_bus_socket") : given;
}

// The first address's socket; none for other transports, which are left to the bus library.
std::optional<QByteArray> socketName(const QByteArray &address) {
    const QByteArray first = address.split(';').constFirst();
    if (!first.startsWith("unix:")) {
        return std::nullopt;
    }
    for (const QByteArray &pair : first.mid(5).split(',')) {
        if (pair.startsWith("path=")) {
            return QByteArray::fromPercentEncoding(pair.mid(5));
        }
        if (pair.startsWith("abstract=")) {
            return QByteArray(1, '\0') + QByteArray::fromPercentEncoding(pair.mid(9));
        }
    }
    return std::nullopt;
}

// False only when somebody listens and does not answer.
bool answers(const QByteArray &name, std::chrono::milliseconds limit) {
    sockaddr_un target{};
    target.sun_family = AF_UNIX;
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket.isOpen() || size_t(name.size()) >= sizeof target.sun_path) {
        return true;
    }
    std::memcpy(target.sun_path, name.constData(), size_t(name.size()));
    const bool abstractName = name.startsWith('\0');
    const auto length =
        socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()) + (abstractName ? 0 : 1));
    if (::connect(socket.get(), reinterpret_cast<const sockaddr *>(&target), length) != 0) {
        // A full queue of waiting connections is the mark of a daemon that is stuck.
        return errno != EAGAIN;
    }
    // The start of the authentication that every client begins with.
    const QByteArray hello = QByteArray(1, '\0') + "AUTH\r\n";
    if (::send(socket.get(), hello.constData(), size_t(hello.size()), MSG_NOSIGNAL) != hello.size()) {
        return true;
    }
    pollfd wait{socket.get(), POLLIN, 0};
    return ::poll(&wait, 1, int(limit.count())) != 0;
}

void avoidWhenStuck(const char *variable, const QByteArray &address, std::chrono::milliseconds limit) {
    const std::optional<QByteArray> name = socketName(address);
    if (name && !answers(*name, limit)) {
        qputenv(variable, "disabled:");
    }
}

} // namespace

void avoidStuckOnes(std::chrono::milliseconds limit) {
    avoidWhenStuck("DBUS_SESSION_BUS_ADDRESS", sessionAddress(), limit);
    avoidWhenStuck("DBUS_SYSTEM_BUS_ADDRESS", systemAddress(), limit);
}

} // namespace MessageBuses
