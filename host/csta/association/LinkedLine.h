#pragma once

#include <string>
#include <string_view>

#include "host/csta-wire/WireDocument.h"

namespace host {

/// A line as the link to its switch sees it. The link calls each function on the reader thread.
class LinkedLine {
public:
    LinkedLine() = default;
    LinkedLine(const LinkedLine&) = delete;
    LinkedLine& operator=(const LinkedLine&) = delete;
    virtual ~LinkedLine() = default;

    /// The connection is there; no request can be sent yet.
    virtual void connected() = 0;
    /// Requests can be sent.
    virtual void ready() = 0;
    /// Each request of the line has failed, and what it has claimed is dropped.
    virtual void connectionLost() = 0;

    /// An event of a monitor that the line has claimed.
    virtual void onEvent(const WireDocument& event) = 0;
    /// A segment with a reference that the line has claimed, or a list of devices without a reference.
    virtual void onSegment(const WireDocument& segment) = 0;
    /// The response to a request of the line whose time had run out.
    virtual void onLateResponse(const WireDocument& response) = 0;
    /// The switch has stopped a monitor that the line has claimed; it is dropped.
    virtual void monitorStopped(const std::string& id) = 0;

    /// The switch reports its system status.
    virtual void onSystemStatus(std::string_view word) = 0;
    /// The system status on a connection that is new to the line; nothing to report.
    virtual void rememberSystemStatus(std::string_view word) = 0;
    /// The switch has lost its monitors, and is in service again.
    virtual void restartMonitors() = 0;
    /// The journal has dropped its calls, and the switch is in service again.
    virtual void askForCalls() = 0;
    /// The devices of telephones have changed.
    virtual void devicesChanged() = 0;
    /// True while the line waits for the list of its devices.
    [[nodiscard]] virtual bool awaitsDevices() const = 0;

    /// The events so far are to be posted before what follows.
    virtual void flushEvents() = 0;
    /// The last event of this read has been delivered. With `here`, the thread may carry them out itself.
    virtual void endEvents() = 0;
};

}  // namespace host
