#pragma once

#include <functional>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>

#include "host/call-files/CallTime.h"
#include "host/history/Call.h"

namespace host {

/// A call that cannot be read. `what()` says which member of it is wrong.
class CallFieldError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The members of one call by their names, as a file has them: texts without an empty one.
using CallFields = std::map<std::string, std::string, std::less<>>;

/// The rules for reading the members of calls. A plain value.
struct CallReading {
    TimeReading time;
    /// The own number, from which `calling` and `called` give the direction of a call.
    std::string ownNumber;
};

/// The members of a call's JSON object, or of another flat one. Throws `CallFieldError` for a member that is
/// an object or an array.
[[nodiscard]] CallFields callFieldsOf(const nlohmann::ordered_json& object);

/// Builds a call from its members (the rules: docs/export-import.md). Only `start` is required. `viewed`
/// is false for a missed call without that member. Throws `CallFieldError`.
[[nodiscard]] Call callOf(const CallFields& fields, const CallReading& reading);

}  // namespace host
