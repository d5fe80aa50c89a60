#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/csta/CstaLinkConfig.h"
#include "host/csta/EventDelivery.h"
#include "host/csta/call-control/CallControlIfc.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/framework/Executable.h"

class Service;

namespace host {

class CstaLinkImpl;
class SwitchLink;

/// The connection of a telephone line to its CSTA switch, registered as "CSTAServiceIfc": CSTA XML over TCP
/// (docs/csta-link.md).
///
/// Sequence of a monitor:
///  1. A service calls `request`. The link assigns a cross reference of its own ("M1"), which survives
///     reconnections.
///  2. If the switch is connected, the link starts the monitor there and waits for the response. A refusal is
///     returned to the service, and the monitor is removed. Without a connection the link accepts the monitor
///     at once and starts it when the switch is connected.
///  3. Every event that carries the switch's id of the monitor is delivered to the receiver on the line's
///     strand.
///  4. After each connection loss the link reconnects with exponential backoff and restarts every wanted
///     monitor.
///
/// A service that requests the system status also receives the phone's devices in one
/// `CSTASwitchingFunctionDevices` event: once they are known, and again when they change.
///
/// Threads: one of two threads of the link, the reader, does all input and output and completes waiting
/// requests. Call `request` from any thread, including a handler on the strand, but not from the status
/// listener. Events reach their receivers through `Post` or `PostHere` only. Call `start` and `stop` from the
/// thread that owns the link.
///
/// Lifetime: receivers and services are borrowed. After a MonitorStop or `releaseService` has returned on the
/// strand, the receiver gets no further event. After `stop` the link posts no event; what it posted before
/// still runs, so receivers must outlive the strand or be released.
class CstaLink final : public Executable, public CSTAServiceIfc, public CallControlIfc {
public:
    using Post = EventDelivery::Post;
    using Status = CstaLinkStatus;
    using StatusListener = CstaLinkStatusListener;

    using PostHere = EventDelivery::PostHere;

    /// With `here`, the threads of the link deliver events themselves where they can, which saves the wake-up
    /// of another thread.
    CstaLink(CstaLinkConfig config, const Post& post, const PostHere& here = {});
    /// The same on a link that lines share. `shared` outlives this object; its own configuration decides how
    /// the switch is reached. With null the line has a link of its own.
    CstaLink(SwitchLink* shared, CstaLinkConfig config, const Post& post, const PostHere& here = {});
    /// Stops the link if it still runs.
    ~CstaLink() override;

    /// Requires: `start` has not been called.
    void setStatusListener(StatusListener listener);
    /// The link calls `listener` on the reader thread when the live calls may have changed. It must not block
    /// and must not send requests through the link. Requires: `start` has not been called.
    void setCallsListener(std::function<void()> listener);

    /// Starts connecting and returns at once. An unreachable switch is not an error: the link keeps trying.
    /// Call once.
    void start();
    /// Fails every waiting request and closes the connection; on a shared link, stops the monitors at the
    /// switch instead. Idempotent.
    void stop();

    /// Thread-safe.
    [[nodiscard]] Status status() const noexcept;
    /// The number of live calls that the services know of. Thread-safe.
    [[nodiscard]] std::size_t callCount() const noexcept;

    /// Removes the monitors and registrations of a service that is about to be destroyed. Call from the
    /// strand, or after the strand has stopped.
    void releaseService(const Service& source);

    // CSTAServiceIfc
    void request(CSTARequest& request) override;

    // CallControlIfc
    [[nodiscard]] CallControlOutcome makeCall(const std::string& number) override;
    [[nodiscard]] CallControlOutcome answerCall(const std::string& id) override;
    [[nodiscard]] CallControlOutcome clearCall(const std::string& id) override;
    /// Empty after `stop`.
    [[nodiscard]] std::vector<LiveCallView> liveCalls() override;

private:
    std::unique_ptr<CstaLinkImpl> m_impl;
};

}  // namespace host
