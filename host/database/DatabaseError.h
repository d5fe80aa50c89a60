#pragma once

#include <stdexcept>

namespace host {

/// The database cannot be used. `what()` is a sentence for the user: the file, the error, the remedy.
class DatabaseError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace host
