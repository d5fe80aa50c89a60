#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/history/Call.h"

namespace host {
class ApiClient;
}

namespace calljournal {

/// Sends calls of a file to the history of a running server, in requests of a few hundred. Calls that begin
/// in the same second are sent together, because the server compares the calls of one request. One thread at
/// a time. The operations throw what `ApiClient` throws.
class CallUpload {
public:
    /// The counts of the calls that are sent.
    struct Counts {
        std::size_t imported = 0;
        /// Calls that the history had before.
        std::size_t known = 0;
    };
    /// Called with the row of the file and the reason for a call that the server refuses.
    using Refused = std::function<void(std::size_t row, const std::string& why)>;

    /// The client is borrowed and outlives the upload. `unviewed`: missed calls count as new.
    CallUpload(host::ApiClient& client, bool unviewed, Refused refused)
        : m_client(client), m_unviewed(unviewed), m_refused(std::move(refused)) {}

    void add(std::size_t row, const host::Call& call);
    /// Sends the rest and ends the import; without it, the server ends the import after half a minute.
    void finish();

    [[nodiscard]] const Counts& counts() const noexcept { return m_counts; }

private:
    void send(bool isLast);

    host::ApiClient& m_client;
    const bool m_unviewed;
    const Refused m_refused;
    Counts m_counts;
    /// The id that the server gave the import, as JSON.
    std::string m_import = "null";
    /// The calls of the next request as JSON, and their rows.
    std::string m_calls;
    std::vector<std::size_t> m_rows;
    std::chrono::sys_seconds m_lastStart;
};

}  // namespace calljournal
