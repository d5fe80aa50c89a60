#pragma once

#include <stdexcept>

namespace host {

/// The connection between a client and the server has failed. `what()` is a message for the user, with the
/// next step.
class RemoteError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace host
