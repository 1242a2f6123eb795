#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QTest>

/// Real mounts for a test, seen by its process and its children only: they go with it.
namespace PrivateMounts {

/// Call first in main(), while the process has one thread. Where it fails the tests run without mounts.
void enter();
/// Empty when mounts can be made, else why this machine forbids them.
QString unavailable();

} // namespace PrivateMounts

#define SKIP_WITHOUT_MOUNTS()                                                                                \
    if (!PrivateMounts::unavailable().isEmpty())                                                             \
    QSKIP(qPrintable(PrivateMounts::unavailable()))

#define PRIVATE_MOUNTS_MAIN(Test)                                                                            \
    int main(int argc, char **argv) {                                                                        \
        PrivateMounts::enter();                                                                              \
        const QCoreApplication application(argc, argv);                                                      \
        Test test;                                                                                           \
        return QTest::qExec(&test, argc, argv);                                                              \
    }

/// A small file system in memory on a directory, made for it, until the end of the object's life.
class MemoryMount {
public:
    /// Options of tmpfs, as in "size=1m".
    MemoryMount(QByteArray path, const QByteArray &options);
    MemoryMount(const MemoryMount &) = delete;
    MemoryMount &operator=(const MemoryMount &) = delete;
    ~MemoryMount();

    bool isMounted() const { return m_mounted; }
    const QByteArray &path() const { return m_path; }
    bool makeReadOnly() const;

private:
    QByteArray m_path;
    bool m_mounted = false;
};
