#include "SessionInput.h"

#include "MediaMaker.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr int largePhotos = 60;
constexpr int largeVideos = 60;
constexpr int photoCount = 4400;

fs::path native(const FileURL &url) {
    return url.nativePath().toStdString();
}

void addLarge(const fs::path &folder, const FileURL &original, int count, const std::string &name) {
    for (int i = 0; i < count; ++i) {
        fs::path copy = folder / (name + std::to_string(i));
        copy += native(original).extension();
        fs::copy_file(native(original), copy);
        // Newer than whatever was made before.
        fs::last_write_time(copy, fs::file_time_type::clock::now() + std::chrono::hours(1));
    }
}

/// An empty folder that takes its name once it is filled, so that an interrupted run leaves no half of one.
class NewFolder {
public:
    explicit NewFolder(const FileURL &folder)
        : m_folder(native(folder)), m_unfinished(m_folder.string() + " being made") {
        fs::remove_all(m_unfinished);
        fs::create_directories(m_unfinished);
    }
    const fs::path &path() const { return m_unfinished; }
    void finish() { fs::rename(m_unfinished, m_folder); }

private:
    fs::path m_folder;
    fs::path m_unfinished;
};

void check(bool made) {
    if (!made) {
        std::fprintf(stderr, "cannot make the session's files\n");
        std::exit(2);
    }
}

} // namespace

FileURL SessionInput::flatFolder(const FileURL &storage, const ScanInput::Library &library) {
    const FileURL folder = storage.appending("flat");
    if (fs::exists(native(folder))) {
        return folder;
    }
    NewFolder made(folder);
    const FileURL photo = storage.appending("large.jpg");
    const FileURL video = storage.appending("large.mp4");
    check(MediaMaker::photo(photo, {.size = {4000, 3000}}) &&
          MediaMaker::video(video, {.size = {1920, 1080}, .seconds = 4, .audio = true}));
    for (const QList<FileURL> &files : {library.photos, library.commonVideos, library.broadcastVideos}) {
        for (const FileURL &file : files) {
            fs::create_hard_link(native(file), made.path() / native(file).filename());
        }
    }
    addLarge(made.path(), photo, largePhotos, "IMG_large_");
    addLarge(made.path(), video, largeVideos, "MOV_large_");
    made.finish();
    return folder;
}

FileURL SessionInput::photoFolder(const FileURL &storage) {
    const FileURL folder = storage.appending("upright photos");
    if (fs::exists(native(folder))) {
        return folder;
    }
    NewFolder made(folder);
    const FileURL photo = storage.appending("upright.jpg");
    check(MediaMaker::photo(photo, {.size = {880, 1040}}));
    for (int i = 0; i < photoCount; ++i) {
        fs::create_hard_link(native(photo), made.path() / ("IMG_" + std::to_string(i) + ".jpg"));
    }
    made.finish();
    return folder;
}
