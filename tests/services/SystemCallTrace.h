#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QString>

/// One call of a traced program, as strace counts it for fault injection: the n-th of its name.
struct SystemCall {
    QByteArray name;
    int ordinal = 0;
    /// Its first argument as text: for most calls the number of a descriptor.
    QByteArray target;
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

    /// Program and arguments.
    explicit SystemCallTrace(QByteArrayList command) : m_command(std::move(command)) {}

    /// Empty when strace works here, else why not.
    static QString unavailable();

    /// The calls between two calls of getppid(). Empty on failure.
    QList<SystemCall> record() const;
    /// Runs it with "signal=KILL" or "error=ENOSPC" at one call; with `andAfter` at all later ones of that
    /// name, too.
    Ending inject(const SystemCall &call, const QByteArray &fault, bool andAfter = false) const;

private:
    static Ending run(const QByteArrayList &command);

    QByteArrayList m_command;
};
