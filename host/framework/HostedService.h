#pragma once

#include <memory>
#include <thread>

#include "platform/framework/Service.h"

namespace host {

class LineContext;
class Strand;

/// The life of one service on its line: `init`, `run`, `shutdown` and destruction in the order that the framework
/// promises, all but `run` on the line's strand. `run` has a thread of its own, for a service may stay in it until it
/// is told to shut down.
///
/// Threads: made, started and stopped by one thread, which is none of the pool's.
class HostedService {
public:
    /// `strand` and `context` are borrowed and outlive this object; the strand may not be closed before `stop`.
    HostedService(std::unique_ptr<Service> service, Strand& strand, LineContext& context);
    /// Stops the service if it still runs.
    ~HostedService();
    HostedService(const HostedService&) = delete;
    HostedService& operator=(const HostedService&) = delete;

    /// Initialises and runs the service; returns when `init` has. Once only.
    void start();

    /// Shuts the service down, deletes the timers that it left, and destroys it. When this returns, neither a timer
    /// nor anything that was posted for the service is under way. Idempotent.
    void stop();

    /// Null after `stop`.
    [[nodiscard]] Service* service() const noexcept { return m_service.get(); }

private:
    std::unique_ptr<Service> m_service;
    Strand& m_strand;
    LineContext& m_context;
    bool m_started = false;
    std::thread m_runner;
};

}  // namespace host
