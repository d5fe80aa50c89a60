#include "host/switch/server/SwitchSimulator.h"

#include <utility>

#include <asio/post.hpp>

#include "host/switch/server/SwitchCore.h"
#include "host/switch/server/SwitchEngine.h"

namespace host {

// ---- Engine

SwitchSimulator::Engine::Engine(SwitchOptions options) : m_options(std::move(options)) {}

SwitchSimulator::Engine::~Engine() {
    stop();
}

void SwitchSimulator::Engine::start() {
    const std::lock_guard lock(m_coreLock);
    if (m_core) {
        return;
    }
    m_core = std::make_unique<SwitchCore>(m_options, m_log, m_callLogs);
    m_port = m_options.port = m_core->port();
    m_thread = std::thread([&io = m_core->io()] { io.run(); });
}

void SwitchSimulator::Engine::stop() {
    std::unique_ptr<SwitchCore> room;
    {
        const std::lock_guard lock(m_coreLock);
        room = std::move(m_core);
    }
    if (room) {
        asio::post(room->io(), [&room] { room->close(); });
        m_thread.join();
    }
}

void SwitchSimulator::Engine::post(std::function<void(SwitchCore&)> work) {
    const std::lock_guard lock(m_coreLock);
    if (m_core) {
        asio::post(m_core->io(), [room = m_core.get(), work = std::move(work)] { work(*room); });
    }
}

// ---- SwitchSimulator

SwitchSimulator::SwitchSimulator(SwitchOptions options)
    : m_impl(std::make_unique<Engine>(std::move(options))) {}

SwitchSimulator::~SwitchSimulator() = default;

void SwitchSimulator::start() {
    m_impl->start();
}

void SwitchSimulator::stop() {
    m_impl->stop();
}

std::uint16_t SwitchSimulator::port() const noexcept {
    return m_impl->port();
}

void SwitchSimulator::run(Scenario scenario, PlayOptions options) {
    m_impl->post([scenario = std::move(scenario), options = std::move(options)](SwitchCore& room) {
        room.play(scenario, options);
    });
}

void SwitchSimulator::setResponseMode(const std::string& request, ResponseMode answering) {
    m_impl->post([request, answering](SwitchCore& room) { room.setResponseMode(request, answering); });
}

void SwitchSimulator::sendSystemStatus(const std::string& word) {
    m_impl->post([word](SwitchCore& room) { room.sendSystemStatus(word); });
}

void SwitchSimulator::stopMonitors(const std::string& device) {
    m_impl->post([device](SwitchCore& room) { room.stopMonitors(device); });
}

void SwitchSimulator::dropClients() {
    m_impl->post([](SwitchCore& room) { room.dropClients(); });
}

std::vector<CallLogEntryEvent> SwitchSimulator::callLog(const std::string& device) const {
    return m_impl->callLog(device);
}

MessageTrace& SwitchSimulator::log() noexcept {
    return m_impl->log();
}

}  // namespace host
