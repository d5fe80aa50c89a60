#pragma once

#include <string>
#include <vector>

#include "host/calls/LiveCallStoreIfc.h"
#include "host/database/DatabaseSession.h"

namespace host {

/// The live calls of one line in the table `live_call`. Use it inside one transaction.
class LiveCallRows {
public:
    LiveCallRows(DatabaseSession& session, const std::string& line) : m_session(session), m_line(line) {}

    /// From the one that began first.
    [[nodiscard]] std::vector<NotedCall> read();
    /// Inserts or replaces the row of the call.
    void write(const NotedCall& noted);
    void remove(const PhoneCallKey& call);
    /// Removes the rows of the ended calls with that id.
    void removeEnded(const std::string& callId);

private:
    DatabaseSession& m_session;
    const std::string& m_line;
};

}  // namespace host
