#pragma once

class CSTARequest;

/// The way to the switch. Registered as "CSTAServiceIfc".
///
/// Threads: any thread may call, a handler of an event included. The call waits for the switch's answer, at most
/// five seconds.
class CSTAServiceIfc {
public:
    CSTAServiceIfc() = default;
    CSTAServiceIfc(const CSTAServiceIfc&) = delete;
    CSTAServiceIfc& operator=(const CSTAServiceIfc&) = delete;
    virtual ~CSTAServiceIfc() = default;

    /// Carries out `request` and puts the response code (0 is success) and the response into it. A switch that
    /// cannot be reached or does not answer in time gives a code other than 0; an answer of the switch that is an
    /// error gives code 0 and the response class of the request (`CSTAMonitorStartResponse` for a start, ...) with
    /// `isErrorResponse()`.
    virtual void request(CSTARequest& request) = 0;
};
