#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/call-import/CallImport.h"

namespace host {

/// Imports in several requests, one import at a time:
///
///  1. The first request of an import gets its id, which each later one has.
///  2. Requests of other imports are refused meanwhile.
///  3. The last request ends the import. One whose client is gone ends when no request has come for the time
///     `patience`, on a thread that this object has while an import goes on.
///
/// Thread-safe; a request waits for the one before.
class ImportSession {
public:
    static constexpr std::chrono::seconds kPatience{30};

    /// The entries are borrowed and outlive the object.
    explicit ImportSession(StoredEntries& entries, std::chrono::milliseconds patience = kPatience);
    ~ImportSession() { stop(); }
    ImportSession(const ImportSession&) = delete;
    ImportSession& operator=(const ImportSession&) = delete;

    struct Request {
        /// The import that goes on; empty for a new one. One that has ended begins again with a new id.
        std::string import;
        bool isLast = true;
        bool unviewed = false;
        std::vector<Call> calls;
    };
    enum class Outcome { eDone, eOtherImport, eFailed };
    struct Response {
        Outcome outcome = Outcome::eFailed;
        CallImport::Counts counts{};
        /// The import that goes on; empty if it has ended.
        std::string import{};
    };
    [[nodiscard]] Response add(const Request& request);

    /// Ends the thread; an import that goes on stays unfinished. Idempotent. Requires: no request runs, and
    /// none comes later.
    void stop();

private:
    void watch();
    void endAbandoned(const std::stop_token& stop);

    const std::chrono::milliseconds m_patience;

    std::mutex m_mutex;
    // Guarded by m_mutex.
    CallImport m_import;
    std::string m_open;
    std::uint64_t m_requests = 0;
    std::condition_variable_any m_changed;
    bool m_watching = false;
    std::jthread m_watcher;
};

}  // namespace host
