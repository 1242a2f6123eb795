#include "TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};
// A pipe rather than a signalfd: blocked signals would be inherited by every thread and child.
std::array<int, 2> pipeEnds{-1, -1};

extern "C" void writeToPipe(int) {
    const int savedError = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    errno = savedError;
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent) {
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (::read(pipeEnds[0], &byte, 1) == 1) {
        }
        Q_EMIT requested();
    });
    struct sigaction action {};
    action.sa_handler = writeToPipe;
    // Back to the default after the first: a program that hangs can still be ended politely.
    action.sa_flags = SA_RESTART | int(SA_RESETHAND);
    for (const int number : handledSignals) {
        ::sigaction(number, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals() {
    if (m_notifier == nullptr) {
        return;
    }
    for (const int number : handledSignals) {
        std::signal(number, SIG_DFL);
    }
    delete m_notifier;
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    pipeEnds = {-1, -1};
}
