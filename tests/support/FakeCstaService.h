#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/csta/CSTAMonitorFilter.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/csta/CallLogEntryRequest.h"
#include "platform/framework/Executable.h"

class CSTAEvent;
class CSTAEventIfc;
class Service;

namespace journaltest {

/// A switch that notes every request and answers as it was told; register it as "CSTAServiceIfc".
///
/// Untold, it grants everything at once: code 0 with the response that fits the request; a monitor's cross
/// reference counts up from "1". Any thread may call.
class FakeCstaService final : public Executable, public CSTAServiceIfc {
public:
    enum class Kind { eSystemStatus, eMonitorStart, eMonitorStop, eChangeMonitorFilter, eEscape, eOther };

    /// A request as it came in. Fields that its class does not have stay empty.
    struct Noted {
        Kind kind = Kind::eOther;
        Service* source = nullptr;
        CSTAEventIfc* receiver = nullptr;
        std::string device;
        std::string crossRefId;
        CSTAMonitorFilter filter;
        int eventType = -1;
        std::optional<CallLogEntryRequest> callLogEntry;
    };

    /// Puts the outcome into a request itself.
    using Answer = std::function<void(CSTARequest&)>;

    void answer(Kind kind, Answer answer);
    /// The switch is not reached: `code`, no response.
    void fail(Kind kind, int code = 1);
    /// The switch refuses: code 0 and an error response.
    void refuse(Kind kind, const std::string& category, const std::string& value);
    /// Back to granting everything.
    void grantAll();

    [[nodiscard]] std::vector<Noted> requests() const;
    [[nodiscard]] std::vector<Noted> requests(Kind kind) const;
    /// The entries of the call-log requests alone, in order.
    [[nodiscard]] std::vector<CallLogEntryRequest> callLogEntries() const;
    void forgetRequests();

    /// Delivers `event` on the caller's thread to the receiver that was named last; nothing without one.
    void deliver(CSTAEvent& event);

    void request(CSTARequest& request) override;

private:
    void grant(Kind kind, CSTARequest& request);

    // Guarded by m_mutex.
    mutable std::mutex m_mutex;
    std::vector<Noted> m_requests;
    std::map<Kind, Answer> m_answers;
    CSTAEventIfc* m_receiver = nullptr;
    int m_monitors = 0;
};

}  // namespace journaltest
