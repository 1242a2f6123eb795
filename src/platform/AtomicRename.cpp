#include "AtomicRename.h"

#include "NumberedName.h"
#include "SystemError.h"

#include <QRandomGenerator>

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool sameFile(int directory, const QByteArray &name, int otherDirectory, const QByteArray &otherName) {
    struct stat a {};
    struct stat b {};
    return ::fstatat(directory, name.constData(), &a, AT_SYMLINK_NOFOLLOW) == 0 &&
           ::fstatat(otherDirectory, otherName.constData(), &b, AT_SYMLINK_NOFOLLOW) == 0 &&
           a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

std::error_code renameThroughLink(int fromDirectory, const QByteArray &from, int toDirectory,
                                  const QByteArray &to) {
    if (::linkat(fromDirectory, from.constData(), toDirectory, to.constData(), 0) != 0) {
        return lastSystemError();
    }
    // Another file may have taken the old name since; it is not ours to remove. When that cannot be told the
    // file keeps both names.
    std::error_code error;
    if (!sameFile(fromDirectory, from, toDirectory, to)) {
        error = systemError(ESTALE);
    } else if (::unlinkat(fromDirectory, from.constData(), 0) != 0) {
        error = lastSystemError();
        ::unlinkat(toDirectory, to.constData(), 0);
    }
    return error;
}

/// True when the kernel or the file system does not know how to rename without replacing.
bool cannotRenameWithoutReplacing(const std::error_code &error) {
    return error.value() == EINVAL || error.value() == ENOSYS || error.value() == EOPNOTSUPP;
}

} // namespace

std::error_code renameWithoutReplacing(int fromDirectory, const QByteArray &from, int toDirectory,
                                       const QByteArray &to) {
    if (::renameat2(fromDirectory, from.constData(), toDirectory, to.constData(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    const std::error_code error = lastSystemError();
    return cannotRenameWithoutReplacing(error) ? renameThroughLink(fromDirectory, from, toDirectory, to)
                                               : error;
}

std::error_code renameToFreeName(int fromDirectory, const QByteArray &from, int toDirectory,
                                 const QByteArray &wanted, QByteArray &taken) {
    for (qint64 n = 1;; ++n) {
        taken = numberedName(wanted, n);
        const std::error_code error = renameWithoutReplacing(fromDirectory, from, toDirectory, taken);
        if (error.value() != EEXIST) {
            return error;
        }
    }
}

QByteArray passingName() {
    const QByteArray digits = QByteArray::number(QRandomGenerator::global()->generate64(), 16);
    return ".mosa-" + digits.rightJustified(16, '0') + ".part";
}
