// Runs one batch of file operations, for tests that kill or trip up the process on its way.
//
//     FileOperationTool copy|move FOLDER FILE…      FileOperationTool trash FILE…
//
// Prints a line for each file, "done PATH" (where it is now, for a transfer) or "failed NUMBER", as soon as
// its outcome is known. The batch stands between two calls of getppid(), which nothing else makes, so that a
// trace shows where it begins and ends.

#include "FileTransfer.h"
#include "Trash.h"

#include <QByteArrayList>
#include <QDateTime>

#include <sys/uio.h>
#include <unistd.h>

namespace {

void print(const std::error_code &error, const QByteArray &path) {
    // Unbuffered, so that a killed process has told what it did, and by a call that no batch makes.
    QByteArray line = (error ? "failed " + QByteArray::number(error.value()) : "done " + path) + '\n';
    const iovec piece{.iov_base = line.data(), .iov_len = size_t(line.size())};
    [[maybe_unused]] const ssize_t written = ::writev(STDOUT_FILENO, &piece, 1);
}

void transfer(FileOperationKind kind, const QByteArrayList &arguments) {
    FileTransfer batch(
        FileURL::directory(arguments[0]), kind,
        [](const FileTransfer::Outcome &outcome) { print(outcome.error, outcome.destination.nativePath()); },
        {});
    for (const QByteArray &file : arguments.mid(1)) {
        batch.add(FileURL::fromNativePath(file));
    }
    batch.flush();
}

void trash(const QByteArrayList &files) {
    Trash batch([](const Trash::Outcome &outcome) { print(outcome.error, outcome.file.nativePath()); });
    for (const QByteArray &file : files) {
        batch.add(FileURL::fromNativePath(file));
    }
    batch.flush();
}

} // namespace

int main(int argc, char **argv) {
    const QByteArrayList arguments(argv + 1, argv + argc);
    if (arguments.size() < 2) {
        return 2;
    }
    // The time zone is read before the batch: its file is not what the batch works on.
    QDateTime::currentDateTime();
    ::getppid();
    if (arguments[0] == "trash") {
        trash(arguments.mid(1));
    } else {
        transfer(arguments[0] == "move" ? FileOperationKind::move : FileOperationKind::copy,
                 arguments.mid(1));
    }
    ::getppid();
    return 0;
}
