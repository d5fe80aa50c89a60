#include "host/switch/server/SwitchSimulatorImpl.h"

#include <utility>

#include <asio/post.hpp>

#include "host/switch/server/SwitchCore.h"

namespace host {

SwitchSimulatorImpl::SwitchSimulatorImpl(SwitchOptions options) : m_options(std::move(options)) {}

SwitchSimulatorImpl::~SwitchSimulatorImpl() {
    stop();
}

void SwitchSimulatorImpl::start() {
    const std::lock_guard lock(m_coreLock);
    if (m_core) {
        return;
    }
    m_core = std::make_unique<SwitchCore>(m_options, m_callLogs);
    m_port = m_options.port = m_core->port();
    m_thread = std::thread([&io = m_core->io()] { io.run(); });
}

void SwitchSimulatorImpl::stop() {
    std::unique_ptr<SwitchCore> core;
    {
        const std::lock_guard lock(m_coreLock);
        core = std::move(m_core);
    }
    if (core) {
        asio::post(core->io(), [&core] { core->close(); });
        m_thread.join();
    }
}

void SwitchSimulatorImpl::post(std::function<void(SwitchCore&)> work) {
    const std::lock_guard lock(m_coreLock);
    if (m_core) {
        asio::post(m_core->io(), [core = m_core.get(), work = std::move(work)] { work(*core); });
    }
}

}  // namespace host
