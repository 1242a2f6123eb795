#include "FileFixture.h"
#include "PrivateMounts.h"
#include "SystemCallTrace.h"

#include <QSet>
#include <QtTest>

#include <functional>
#include <optional>

#include <sys/xattr.h>

using namespace Qt::StringLiterals;

using namespace FileFixture;

namespace {

constexpr const char *errors[] = {"ENOSPC", "EIO", "EACCES", "EROFS", "EDQUOT", "EXDEV", "ENAMETOOLONG"};

} // namespace

/// Whatever happens to the program or to the disk in the midst of a batch, no file may be lost: runs batches
/// once for each of their system calls, with a fault at that call.
class FileFaultTest : public QObject {
    Q_OBJECT

    struct Result {
        QByteArrayList lines;
        /// A kill, or a fault in tidying up, may leave hidden files and second names behind.
        bool mayLeave = false;
    };

    std::optional<TemporaryFolder> m_root;
    std::optional<MemoryMount> m_source;
    std::optional<MemoryMount> m_target;
    QByteArray m_from;
    QByteArray m_to;
    QByteArray m_records;
    QByteArrayList m_contents;
    QByteArray m_action;

    QByteArrayList command() const {
        QByteArrayList words{FILE_OPERATION_TOOL, m_action};
        if (m_action != "trash") {
            words.append(m_to);
        }
        for (const QByteArray &name : fileNames()) {
            words.append(m_from + '/' + name);
        }
        return words;
    }

    static QByteArrayList fileNames() { return {"a.mp4", "b.jpg"}; }

    /// Every run begins alike: two files, of which the first is larger than a buffer.
    bool reset() const {
        const auto empty = [](const QByteArray &folder) {
            for (const QByteArray &name : names(folder)) {
                ::unlink(QByteArray(folder + '/' + name).constData());
            }
        };
        empty(m_from);
        empty(m_to);
        if (!m_records.isEmpty()) {
            empty(m_records);
        }
        bool written = true;
        for (qsizetype i = 0; i < m_contents.size(); ++i) {
            const QByteArray path = m_from + '/' + fileNames().at(i);
            written = written && write(path, m_contents[i]);
            ::setxattr(path.constData(), "user.comment", "x", 1, 0);
        }
        return written;
    }

    static bool isHidden(const QByteArray &name) { return name.startsWith(".mosa-"); }

    static QByteArrayList realNames(const QByteArray &folder) {
        QByteArrayList found = names(folder);
        found.removeIf([](const QByteArray &name) { return isHidden(name); });
        return found;
    }

    /// Empty when all is well after a run, else what is not.
    QByteArray problem(const Result &result) const {
        for (const QByteArray &folder : {m_from, m_to}) {
            for (const QByteArray &name : realNames(folder)) {
                if (!m_contents.contains(read(folder + '/' + name))) {
                    return "part of a file as " + folder + '/' + name;
                }
            }
        }
        qsizetype done = 0;
        for (qsizetype i = 0; i < m_contents.size(); ++i) {
            const bool known = i < result.lines.size();
            const bool isDone = known && result.lines[i].startsWith("done");
            done += isDone ? 1 : 0;
            if (const QByteArray text = problemOf(i, known, isDone); !text.isEmpty()) {
                return text;
            }
        }
        if (!m_records.isEmpty()) {
            for (const QByteArray &name : realNames(m_to)) {
                if (!read(m_records + '/' + name + ".trashinfo").endsWith('\n')) {
                    return "no record of " + name;
                }
            }
        }
        if (!result.mayLeave) {
            const bool tidy = names(m_from) == realNames(m_from) && names(m_to) == realNames(m_to);
            const bool counted =
                realNames(m_to).size() == done && (m_records.isEmpty() || names(m_records).size() == done);
            return tidy && counted ? QByteArray() : "something was left behind"_ba;
        }
        return {};
    }

    QByteArray problemOf(qsizetype i, bool known, bool isDone) const {
        const QByteArray name = fileNames().at(i);
        const bool atSource = read(m_from + '/' + name) == m_contents[i];
        const bool atTarget = read(m_to + '/' + name) == m_contents[i];
        if (!atSource && !atTarget) {
            return name + " is lost";
        }
        if (isDone && (!atTarget || atSource != (m_action == "copy"))) {
            return name + " was said to be done";
        }
        if (m_action == "copy" ? !atSource : known && !isDone && !atSource) {
            return name + " did not stay";
        }
        return {};
    }

    static void addActions(bool allThroughLinks) {
        QTest::addColumn<QByteArray>("action");
        QTest::addColumn<bool>("across");
        QTest::addColumn<QByteArray>("unknownCall");
        const auto add = [](const char *title, const char *action, bool across, const char *unknown = "") {
            QTest::newRow(title) << QByteArray(action) << across << QByteArray(unknown);
        };
        add("copy", "copy", true);
        add("move within a file system", "move", false);
        add("move to another file system", "move", true);
        add("trash at home", "trash", false);
        add("trash on a mount", "trash", true);
        // File systems that can give a file a second name, but not rename without replacing.
        add("move within a file system, through links", "move", false, "renameat2");
        if (allThroughLinks) {
            add("copy, through links", "copy", true, "renameat2");
            add("move to another file system, through links", "move", true, "renameat2");
            add("trash at home, through links", "trash", false, "renameat2");
        }
    }

    /// Empty when the row can run.
    QString prepare() {
        QFETCH(QByteArray, action);
        QFETCH(bool, across);
        if (!SystemCallTrace::unavailable().isEmpty()) {
            return SystemCallTrace::unavailable();
        }
        if (across && !PrivateMounts::unavailable().isEmpty()) {
            return PrivateMounts::unavailable();
        }
        m_action = action;
        m_root.emplace();
        m_from = m_root->path() + "/from";
        m_to = m_root->path() + "/to";
        const QByteArray card = m_root->path() + "/card";
        if (across) {
            m_source.emplace(card, "size=4m");
            m_target.emplace(m_to, "size=4m");
            m_from = card + "/from";
        } else {
            makeDirectory(m_to);
        }
        makeDirectory(m_from);
        qputenv("XDG_DATA_HOME", m_root->path());
        qputenv("TZ", "UTC0");
        m_records.clear();
        if (action == "trash") {
            const QByteArray trash =
                across ? card + "/.Trash-" + QByteArray::number(::geteuid()) : m_root->path() + "/Trash";
            makeDirectory(trash);
            m_to = trash + "/files";
            m_records = trash + "/info";
            makeDirectory(m_to);
            makeDirectory(m_records);
        }
        m_contents = {MediaMaker::noise(300'000), MediaMaker::noise(2'000)};
        return {};
    }

    /// Not the calls for memory, nor the tool's own report.
    static bool concernsFiles(const SystemCall &call) {
        static const QSet<QByteArray> others{"brk",     "mmap",      "munmap", "mprotect",
                                             "madvise", "getrandom", "futex",  "writev"};
        return !others.contains(call.name);
    }

    /// A file that cannot be looked at or removed any more stays where it is; it must not be lost for that.
    static bool canTidyUpWithout(const SystemCall &call) {
        return call.name != "unlinkat" && !call.name.contains("stat");
    }

    /// Runs the row's batch with a fault at each of its calls; the fault tells what is wrong afterwards.
    void sweep(const std::function<QByteArray(const SystemCallTrace &, const SystemCall &)> &fault) {
        if (const QString reason = prepare(); !reason.isEmpty()) {
            QSKIP(qPrintable(reason));
        }
        QFETCH(QByteArray, unknownCall);
        const SystemCallTrace trace(command(), unknownCall);
        QVERIFY(reset());
        const QList<SystemCall> calls = trace.record();
        QVERIFY(calls.size() > 5);
        for (const SystemCall &call : calls) {
            QVERIFY(reset());
            const QByteArray text = fault(trace, call);
            QVERIFY2(text.isEmpty(), call.name + ' ' + QByteArray::number(call.ordinal) + ": " + text);
        }
        qInfo("%d calls", int(calls.size()));
    }

private Q_SLOTS:
    void cleanup() {
        m_target.reset();
        m_source.reset();
        m_root.reset();
    }

    void survivesAKillAtEveryCall_data() { addActions(true); }

    void survivesAKillAtEveryCall() {
        sweep([this](const SystemCallTrace &trace, const SystemCall &call) {
            const SystemCallTrace::Ending ending = trace.inject(call, "signal=KILL");
            // It was killed: else the sweep shows nothing.
            return ending.exited && ending.code <= 128 ? "it was not killed"_ba
                                                       : problem({.lines = ending.lines, .mayLeave = true});
        });
    }

    void survivesAnErrorAtEveryCall_data() { addActions(false); }

    void survivesAnErrorAtEveryCall() {
        int runs = 0;
        int failures = 0;
        sweep([&](const SystemCallTrace &trace, const SystemCall &call) {
            for (const char *error : errors) {
                // Closing says nothing that fsync has not said before; one error shows it.
                if (!concernsFiles(call) || (call.name == "close" && qstrcmp(error, "EIO") != 0)) {
                    continue;
                }
                if (!reset()) {
                    return "no files"_ba;
                }
                const SystemCallTrace::Ending ending = trace.inject(call, "error="_ba + error);
                // Between two names of one file, a stat that fails leaves both.
                const bool tidies = trace.unknownCall().isEmpty() || canTidyUpWithout(call);
                const QByteArray text = problem({.lines = ending.lines, .mayLeave = !tidies});
                if (!text.isEmpty() || ending.code != 0) {
                    return error + ": "_ba + text;
                }
                ++runs;
                failures += ending.lines.join().contains("failed") ? 1 : 0;
            }
            return QByteArray();
        });
        QVERIFY(failures > runs / 10 || runs == 0);
        qInfo("%d runs, %d with a failed file", runs, failures);
    }

    /// The disk, once broken, stays so.
    void survivesALastingError_data() { addActions(true); }

    void survivesALastingError() {
        QSet<QByteArray> seen;
        sweep([&](const SystemCallTrace &trace, const SystemCall &call) {
            if (!concernsFiles(call) || seen.contains(call.name)) {
                return QByteArray();
            }
            seen.insert(call.name);
            const SystemCallTrace::Ending ending = trace.inject(call, "error=EIO", true);
            const bool ended = ending.exited && ending.code == 0 && ending.lines.size() == m_contents.size();
            return ended ? problem({.lines = ending.lines, .mayLeave = !canTidyUpWithout(call)})
                         : "it did not run to its end"_ba;
        });
    }
};

PRIVATE_MOUNTS_MAIN(FileFaultTest)
#include "FileFaultTest.moc"
