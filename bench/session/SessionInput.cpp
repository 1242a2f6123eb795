#include "SessionInput.h"

#include "MediaMaker.h"

#include <QByteArray>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr int largePhotos = 60;
constexpr int largeVideos = 60;

fs::path native(const FileURL &url) {
    return url.nativePath().toStdString();
}

void addLarge(const FileURL &folder, const FileURL &original, int count, const QByteArray &name) {
    for (int i = 0; i < count; ++i) {
        const FileURL copy =
            folder.appending(name + QByteArray::number(i) + "." + original.pathExtension().toUtf8());
        fs::copy_file(native(original), native(copy), fs::copy_options::overwrite_existing);
        // Newer than whatever was made before.
        fs::last_write_time(native(copy), fs::file_time_type::clock::now() + std::chrono::hours(1));
    }
}

} // namespace

FileURL SessionInput::flatFolder(const FileURL &storage, const ScanInput::Library &library) {
    const FileURL folder = storage.appending("flat");
    if (fs::exists(native(folder))) {
        return folder;
    }
    const FileURL made = storage.appending("flat being made");
    fs::remove_all(native(made));
    fs::create_directories(native(made));
    const FileURL photo = storage.appending("large.jpg");
    const FileURL video = storage.appending("large.mp4");
    if (!MediaMaker::photo(photo, {.size = {4000, 3000}}) ||
        !MediaMaker::video(video, {.size = {1920, 1080}, .seconds = 4, .audio = true})) {
        std::fprintf(stderr, "cannot make the large files\n");
        std::exit(2);
    }
    for (const QList<FileURL> &files : {library.photos, library.commonVideos, library.broadcastVideos}) {
        for (const FileURL &file : files) {
            fs::create_hard_link(native(file), native(made) / native(file).filename());
        }
    }
    addLarge(made, photo, largePhotos, "IMG_large_");
    addLarge(made, video, largeVideos, "MOV_large_");
    fs::rename(native(made), native(folder));
    return folder;
}
