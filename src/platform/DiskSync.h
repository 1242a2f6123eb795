#pragma once

#include <system_error>

/// Waits until an open file's content and attributes, or an open directory's names, are on the disk. Reports
/// what failed to get there, earlier writing in the background included.
std::error_code syncToDisk(int descriptor);
