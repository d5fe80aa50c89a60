#pragma once

#include <stdexcept>

namespace host {

/// A certificate, key or list of authorities cannot be used; `what` is a text for the user that names the
/// file.
class TlsError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace host
