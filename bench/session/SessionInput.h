#pragma once

#include "ScanInput.h"

namespace SessionInput {

/// The library's 10,000 files as links in one folder, among them, as the newest, photos of 12 megapixels and
/// videos of 1080p as cameras write them.
FileURL flatFolder(const FileURL &storage, const ScanInput::Library &library);
/// Photos in one folder, enough for 200 pages of some 20, each large enough for a thumbnail of full size.
FileURL photoFolder(const FileURL &storage);

} // namespace SessionInput
