#pragma once

class CSTARequest;

/// The connection to the switch. Registered as "CSTAServiceIfc".
///
/// Threads: any thread may call, also the handler of an event. The call waits for the switch's response, at
/// most five seconds. The journal files no call while it makes the requests about the call log of one change,
/// one after the other: limit the wait for all of them, too, and send the rest without waiting.
class CSTAServiceIfc {
public:
    CSTAServiceIfc() = default;
    CSTAServiceIfc(const CSTAServiceIfc&) = delete;
    CSTAServiceIfc& operator=(const CSTAServiceIfc&) = delete;
    virtual ~CSTAServiceIfc() = default;

    /// Carries out `request` and stores the response code (0 is success) and the response in it. A switch
    /// that cannot be reached, or does not respond in time, gives another code than 0. An error response of
    /// the switch gives code 0 and the response class of the request (`CSTAMonitorStartResponse` for a start,
    /// ...) with `isErrorResponse()`.
    virtual void request(CSTARequest& request) = 0;
};
