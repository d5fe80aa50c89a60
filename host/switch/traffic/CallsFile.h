#pragma once

#include <chrono>
#include <fstream>
#include <string>

#include "host/switch/traffic/TrafficCall.h"

namespace host {

/// Writes the traffic to compare a journal with it: a CSV file (RFC 4180) with a row for each device in a
/// call, in the order of their ends:
///
///     device,result,number,call_id,ended
///     2001,missed,+15551012345,17,2026-11-23T09:12:44.123456Z
///
/// `result` is missed, received, dialled or elsewhere; `ended` the time after which the last event of the
/// device was given to the connection. Not thread-safe.
class CallsFile {
public:
    using Time = std::chrono::system_clock::time_point;

    /// Creates the file, or replaces it. Throws `std::runtime_error` with its name if that fails.
    explicit CallsFile(const std::string& path);

    void add(const std::string& callId, const TrafficPart& part, Time ended);
    /// Flushes it; false if it is incomplete.
    [[nodiscard]] bool finish();

private:
    std::ofstream m_file;
};

}  // namespace host
