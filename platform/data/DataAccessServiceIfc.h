#pragma once

#include <string>

/// The phone's database, used through text documents. Registered as "DataAccessServiceIfc".
///
/// `docs/messages.md` gives the form of every request and response. Thread-safe. A call returns when the
/// change is durable, so it may wait for the disk.
class DataAccessServiceIfc {
public:
    DataAccessServiceIfc() = default;
    DataAccessServiceIfc(const DataAccessServiceIfc&) = delete;
    DataAccessServiceIfc& operator=(const DataAccessServiceIfc&) = delete;
    virtual ~DataAccessServiceIfc() = default;

    /// Carries out one request document. Returns the response document, or the text "failed" without a
    /// change.
    [[nodiscard]] virtual std::string processRequest(const std::string& request) = 0;
};
