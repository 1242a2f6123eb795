#pragma once

#include <system_error>

struct stat;

/// Gives an open file the owner, extended attributes, access control lists, mode and times of another one,
/// whose status was read before its content.
///
/// What the target's file system cannot hold at all (times below its grain, an owner, attributes on FAT) is
/// left out; what it could hold and failed to is an error. Without the right to keep the owner, the set-id
/// bits are left out too.
std::error_code copyFileAttributes(int source, const struct stat &sourceStatus, int target);
