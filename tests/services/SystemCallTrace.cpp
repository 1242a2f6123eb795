#include "SystemCallTrace.h"

#include <QHash>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryFile>

namespace {

constexpr int patience = 60'000;

} // namespace

SystemCallTrace::Ending SystemCallTrace::run(const QByteArrayList &command) {
    QStringList words;
    for (const QByteArray &word : command) {
        words.append(QString::fromUtf8(word));
    }
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // The leak checker cannot work in a process that is traced already.
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(words.constFirst(), words.mid(1));
    Ending ending;
    if (!process.waitForFinished(patience)) {
        process.kill();
        process.waitForFinished();
        return ending;
    }
    ending.exited = process.exitStatus() == QProcess::NormalExit;
    ending.code = process.exitCode();
    ending.lines = process.readAllStandardOutput().split('\n');
    ending.lines.removeLast();
    return ending;
}

QString SystemCallTrace::unavailable() {
    const Ending ending =
        run({"strace", "-qq", "-o", "/dev/null", "-e", "inject=getppid:error=EIO:when=1", "true"});
    return ending.exited && ending.code == 0
               ? QString()
               : QStringLiteral("strace is missing or forbidden on this machine");
}

QList<SystemCall> SystemCallTrace::record() const {
    QTemporaryFile file;
    if (!file.open()) {
        return {};
    }
    trace({"-o", file.fileName().toUtf8()});
    QList<SystemCall> calls;
    QHash<QByteArray, int> counts;
    bool inside = false;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const QByteArray name = line.left(line.indexOf('('));
        const int ordinal = ++counts[name];
        if (name == "getppid") {
            inside = !inside;
        } else if (inside && !name.isEmpty() && name != m_unknownCall) {
            calls.append({.name = name, .ordinal = ordinal});
        }
    }
    return calls;
}

SystemCallTrace::Ending SystemCallTrace::inject(const SystemCall &call, const QByteArray &fault,
                                                bool andAfter) const {
    const QByteArray when = QByteArray::number(call.ordinal) + (andAfter ? "+" : "");
    QByteArrayList options{"-o", "/dev/null", "-e", "inject=" + call.name + ':' + fault + ":when=" + when};
    if (m_unknownCall.isEmpty()) {
        options.append({"-e", "trace=" + call.name});
    }
    if (fault.startsWith("error")) {
        // Stops at the calls of that name only, a third faster; signals are not sent that way.
        options.append({"-f", "--seccomp-bpf"});
    }
    return trace(options);
}

SystemCallTrace::Ending SystemCallTrace::trace(QByteArrayList options) const {
    if (!m_unknownCall.isEmpty()) {
        options.append({"-e", "inject=" + m_unknownCall + ":error=EINVAL"});
    }
    return run(QByteArrayList{"strace", "-qq"} + options + m_command);
}
