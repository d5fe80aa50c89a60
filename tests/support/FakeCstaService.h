#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/csta/CSTAMonitorFilter.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/csta/CallLogEntryRequest.h"
#include "platform/framework/Executable.h"

class CSTAEventIfc;
class CSTAResponse;

namespace journaltest {

/// A switch that records every request and gives the responses of the test; register it as "CSTAServiceIfc".
///
/// By default it grants everything at once: code 0 with the response that fits the request; a monitor's cross
/// reference counts up from "1". Any thread may make requests; a test sets up and reads when none does.
class FakeCstaService final : public Executable, public CSTAServiceIfc {
public:
    enum class Kind { eSystemStatus, eMonitorStart, eMonitorStop, eChangeMonitorFilter, eEscape };
    /// Puts the outcome into a request itself.
    using Response = std::function<void(CSTARequest&)>;

    /// Sets the response to requests of a kind; an empty function grants them again.
    void respond(Kind kind, Response response) { m_responses[kind] = std::move(response); }

    /// The requests, "start localDeviceID; stop 1; change localDeviceID; status", and apart from that the
    /// entries of the call-log requests.
    [[nodiscard]] const std::string& asked() const { return m_asked; }
    [[nodiscard]] const std::vector<CallLogEntryRequest>& callLogEntries() const { return m_callLogEntries; }
    void forgetRequests() {
        m_asked.clear();
        m_callLogEntries.clear();
    }
    /// Of the last request: who is to get the events, and the monitor's filter.
    [[nodiscard]] CSTAEventIfc* lastReceiver() const { return m_lastReceiver; }
    [[nodiscard]] const CSTAMonitorFilter& lastFilter() const { return m_lastFilter; }

    void request(CSTARequest& request) override;

private:
    // With m_mutex held.
    Kind note(const CSTARequest& request);
    std::unique_ptr<CSTAResponse> grant(Kind kind);

    // Guarded by m_mutex.
    std::mutex m_mutex;
    std::map<Kind, Response> m_responses;
    std::string m_asked;
    std::vector<CallLogEntryRequest> m_callLogEntries;
    int m_monitors = 0;
    CSTAEventIfc* m_lastReceiver = nullptr;
    CSTAMonitorFilter m_lastFilter;
};

}  // namespace journaltest
