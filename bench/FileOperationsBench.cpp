// Copies, moves and trashes files beside the usual programs, and watches whether the main thread stays free.
//
//     bench_fileoperations [DIRECTORY [LARGE_MIB [FILES [ROUNDS]]]]
//
// The directory's file system is what is measured; by default the working directory's. A copy counts when it
// is on the disk, so cp is followed by sync of its files.

#include "BatchProgress.h"
#include "Comparison.h"
#include "FileOperations.h"
#include "MainThreadGaps.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr qint64 mebibyte = 1 << 20;

/// The folders of one benchmark.
struct Place {
    fs::path from;
    fs::path to;
    fs::path trash;
};

void fill(const fs::path &path, qint64 size) {
    std::vector<char> block(size_t(std::min(size, mebibyte)));
    quint32 state = quint32(qHash(QByteArray::fromStdString(path.string())));
    for (char &byte : block) {
        state = state * 1664525U + 1013904223U;
        byte = char(state >> 24);
    }
    std::ofstream stream(path, std::ios::binary);
    for (qint64 at = 0; at < size; at += qint64(block.size())) {
        stream.write(block.data(), std::streamsize(block.size()));
    }
}

QList<FileURL> filesIn(const fs::path &folder) {
    QList<FileURL> files;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
        files.append(FileURL::fromNativePath(QByteArray::fromStdString(entry.path().string())));
    }
    return files;
}

/// How many files there are and how large they are together.
QByteArray digest(const fs::path &folder) {
    qint64 count = 0;
    quint64 size = 0;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
        ++count;
        size += entry.file_size();
    }
    return QByteArray::number(count) + " files, " + QByteArray::number(size) + " bytes";
}

void shell(const std::string &command) {
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "failed: %s\n", command.c_str());
    }
}

double longestGap = 0;

/// Runs the event loop until the batch ends, as the program does, and notes its longest pause.
template <typename Result>
void await(QFuture<Result> future) {
    QEventLoop loop;
    QFutureWatcher<Result> watcher;
    QObject::connect(&watcher, &QFutureWatcher<Result>::finished, &loop, &QEventLoop::quit);
    MainThreadGaps gaps;
    gaps.start();
    watcher.setFuture(future);
    loop.exec();
    gaps.stop();
    longestGap = std::max(longestGap, gaps.figures().longest);
}

/// As the program shows it.
FileOperations::Progress progress() {
    return BatchProgress([](double fraction) { qApp->setProperty("progress", fraction); }).reporter();
}

void transfer(const Place &place, FileOperationKind kind, const FileOperations::Progress &progress) {
    await(FileOperations::transfer(filesIn(place.from),
                                   FileURL::directory(QByteArray::fromStdString(place.to.string())), kind,
                                   progress));
}

/// Empty folders and the files to work on, all of it on the disk.
void reset(const Place &place, int count, qint64 size) {
    fs::remove_all(place.to);
    fs::remove_all(place.trash);
    fs::create_directories(place.to);
    fs::create_directories(place.from);
    for (int i = 0; i < count; ++i) {
        const fs::path path = place.from / ("file " + std::to_string(i) + ".mp4");
        if (!fs::exists(path)) {
            fill(path, size);
        }
    }
    ::sync();
}

void compareCopies(const std::string &title, const Place &place, int count, qint64 size, int rounds) {
    Comparison comparison(title);
    comparison.before([=] { reset(place, count, size); });
    comparison.subject([=] {
        transfer(place, FileOperationKind::copy, progress());
        return digest(place.to);
    });
    comparison.peer("cp --reflink=auto, sync -d", 1.1, [=] {
        shell("cp --reflink=auto -t '" + place.to.string() + "' '" + place.from.string() +
              "'/* && sync -d '" + place.to.string() + "'/*");
        return digest(place.to);
    });
    comparison.run(rounds);
}

void compareMoves(const Place &place, int count, int rounds) {
    Comparison comparison("move of " + std::to_string(count) + " files");
    comparison.before([=] { reset(place, count, 1024); });
    comparison.subject([=] {
        transfer(place, FileOperationKind::move, progress());
        return digest(place.to);
    });
    comparison.peer("without progress", 1.02, [=] {
        transfer(place, FileOperationKind::move, {});
        return digest(place.to);
    });
    comparison.peer("mv", 1.5, [=] {
        shell("mv -t '" + place.to.string() + "' '" + place.from.string() + "'/*");
        return digest(place.to);
    });
    comparison.run(rounds);
}

void compareTrash(const Place &place, int count, int rounds) {
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(place.trash.string()));
    Comparison comparison("trash of " + std::to_string(count) + " files");
    comparison.before([=] { reset(place, count, 1024); });
    const auto result = [=] { return digest(place.trash / "Trash/files"); };
    comparison.subject([=] {
        await(FileOperations::trash(filesIn(place.from), progress()));
        return result();
    });
    comparison.peer("gio trash", 1, [=] {
        shell("gio trash '" + place.from.string() + "'/*");
        return result();
    });
    comparison.run(rounds);
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const auto number = [&](int index, int fallback) {
        return argc > index ? std::max(1, std::atoi(argv[index])) : fallback;
    };
    const QString directory = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(".");
    const QTemporaryDir root(directory + QStringLiteral("/mosa-bench-XXXXXX"));
    const fs::path top = fs::absolute(root.path().toStdString());
    const Place place{.from = top / "from", .to = top / "to", .trash = top / "data"};
    const int count = number(3, 2000);
    const int rounds = number(4, 5);
    // Original, copy and some air; what the disk has no room for is not measured.
    const qint64 room = qint64(fs::space(top).available) / mebibyte / 3;
    const qint64 large = std::min<qint64>(number(2, 4096), room);

    Comparison::printHeader();
    compareCopies("copy of " + std::to_string(large) + " MiB", place, 1, large * mebibyte, rounds);
    fs::remove_all(place.from);
    const int copied = int(std::min<qint64>(count, room));
    compareCopies("copy of " + std::to_string(copied) + " files of 1 MiB", place, copied, mebibyte, rounds);
    fs::remove_all(place.from);
    compareMoves(place, count, 2 * rounds);
    fs::remove_all(place.from);
    compareTrash(place, count, 2 * rounds);
    std::printf("\nlongest pause of the main thread: %.1f ms\n", longestGap);
    return 0;
}
