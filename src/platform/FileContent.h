#pragma once

#include <QtGlobal>

#include <functional>
#include <system_error>

/// Asked now and then while work goes on; true ends it early.
using StopRequest = std::function<bool()>;

/// Writes all of the bytes at the offset of a file open for writing, however many calls that takes.
std::error_code writeAll(int target, const char *bytes, qint64 count, qint64 offset);

/// Fills an empty file, open for writing, with the first `size` bytes of one open for reading: sharing the
/// blocks where the file system can, else copied inside the kernel, else through memory. Holes stay holes.
/// Writing to the disk is begun but not waited for.
///
/// Fails when the source ends before `size`, and with operation_canceled when asked to stop; the target then
/// holds a part only.
std::error_code copyFileContent(int source, int target, qint64 size, const StopRequest &stop);
