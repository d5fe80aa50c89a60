#pragma once

class CSTAConnectionClearedEvent;

namespace journal {

/// Handles a ConnectionCleared event that waits for nothing any more. The event is borrowed for the call.
class ConnectionClearedSinkIfc {
public:
    ConnectionClearedSinkIfc() = default;
    ConnectionClearedSinkIfc(const ConnectionClearedSinkIfc&) = delete;
    ConnectionClearedSinkIfc& operator=(const ConnectionClearedSinkIfc&) = delete;
    virtual ~ConnectionClearedSinkIfc() = default;

    virtual void immediatelyhandleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) = 0;
};

}  // namespace journal
