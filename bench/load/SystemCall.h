#pragma once

#include <cerrno>
#include <system_error>

namespace bench {

/// Returns the result of a system call; throws `std::system_error` if it is negative.
template <typename Result>
Result checked(Result result, const char* what) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

}  // namespace bench
