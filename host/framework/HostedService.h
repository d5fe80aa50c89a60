#pragma once

#include <memory>
#include <thread>

#include "platform/framework/Service.h"

namespace host {

class LineContext;
class Strand;

/// The life cycle of one service on its line: `init`, `run`, `shutdown` and destruction in the order that the
/// framework promises. `run` has a thread of its own, because a service may stay in it until `shutdown`;
/// everything else runs on the line's strand.
///
/// Threads: one thread creates, starts and stops it. This thread must not belong to the pool.
class HostedService {
public:
    /// Requires: `strand` and `context` outlive this object; the strand stays open until `stop` has returned.
    HostedService(std::unique_ptr<Service> service, Strand& strand, LineContext& context);
    /// Stops the service if it still runs.
    ~HostedService();
    HostedService(const HostedService&) = delete;
    HostedService& operator=(const HostedService&) = delete;

    /// Initialises and runs the service. Returns after `init`, and throws what `init` throws. Call once only.
    void start();

    /// Shuts the service down, deletes its remaining timers and destroys it. Afterwards no timer and no
    /// posted work can reach the service. Idempotent.
    void stop();

    /// Returns nullptr after `stop`.
    [[nodiscard]] Service* service() const noexcept { return m_service.get(); }

private:
    std::unique_ptr<Service> m_service;
    Strand& m_strand;
    LineContext& m_context;
    bool m_started = false;
    std::thread m_runner;
};

}  // namespace host
