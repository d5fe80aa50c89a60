#pragma once

#include <string>

/// The phone's database, reached with text documents. Registered as "DataAccessServiceIfc".
///
/// `docs/messages.md` gives the form of every request and answer. Threads: any thread may call, at any time;
/// the implementation synchronises. A call returns when the change is durable, so it may wait for the disk.
class DataAccessServiceIfc {
public:
    DataAccessServiceIfc() = default;
    DataAccessServiceIfc(const DataAccessServiceIfc&) = delete;
    DataAccessServiceIfc& operator=(const DataAccessServiceIfc&) = delete;
    virtual ~DataAccessServiceIfc() = default;

    /// Answers one request document with an answer document, or with the text "failed" and nothing changed.
    [[nodiscard]] virtual std::string processRequest(const std::string& request) = 0;
};
