#pragma once

#include <stdexcept>

namespace host {

/// Something between a client and the server went wrong. `what()` says what, and what to do next, ready to be shown.
class RemoteError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace host
