#pragma once

#include <cerrno>
#include <system_error>

/// What the last failed system call of this thread reported.
inline std::error_code lastSystemError() {
    return {errno, std::generic_category()};
}

inline std::error_code systemError(int number) {
    return {number, std::generic_category()};
}
