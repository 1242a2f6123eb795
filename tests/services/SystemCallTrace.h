#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QString>

/// One call of a traced program, as strace counts it for fault injection: the n-th of its name.
struct SystemCall {
    QByteArray name;
    int ordinal = 0;
};

/// Runs a program under strace, which can make single calls fail or kill the program there.
class SystemCallTrace {
public:
    struct Ending {
        bool exited = false;
        int code = -1;
        /// Lines of the program's standard output.
        QByteArrayList lines;
    };

    /// Program and arguments; the name of a call that always fails with EINVAL, as where the file system does
    /// not know it, if any.
    explicit SystemCallTrace(QByteArrayList command, QByteArray unknownCall = {})
        : m_command(std::move(command)), m_unknownCall(std::move(unknownCall)) {}

    const QByteArray &unknownCall() const { return m_unknownCall; }

    /// Empty when strace works here, else why not.
    static QString unavailable();

    /// The calls between two calls of getppid(), without those that always fail. Empty on failure.
    QList<SystemCall> record() const;
    /// Runs it with "signal=KILL" or "error=ENOSPC" at one call; with `andAfter` at all later ones of that
    /// name, too.
    Ending inject(const SystemCall &call, const QByteArray &fault, bool andAfter = false) const;

private:
    static Ending run(const QByteArrayList &command);
    Ending trace(QByteArrayList options) const;

    QByteArrayList m_command;
    QByteArray m_unknownCall;
};
