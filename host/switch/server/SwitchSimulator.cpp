#include "host/switch/server/SwitchSimulator.h"

#include <utility>

#include <asio/post.hpp>

#include "host/switch/server/SwitchEngine.h"
#include "host/switch/server/SwitchRoom.h"

namespace host {

// ---- Engine

SwitchSimulator::Engine::Engine(SwitchOptions options) : m_options(std::move(options)) {}

SwitchSimulator::Engine::~Engine() {
    stop();
}

void SwitchSimulator::Engine::start() {
    const std::lock_guard lock(m_roomLock);
    if (m_room) {
        return;
    }
    m_room = std::make_unique<SwitchRoom>(m_options, m_log, m_callLogs);
    m_port = m_options.port = m_room->port();
    m_thread = std::thread([&io = m_room->io()] { io.run(); });
}

void SwitchSimulator::Engine::stop() {
    std::unique_ptr<SwitchRoom> room;
    {
        const std::lock_guard lock(m_roomLock);
        room = std::move(m_room);
    }
    if (room) {
        asio::post(room->io(), [&room] { room->close(); });
        m_thread.join();
    }
}

void SwitchSimulator::Engine::post(std::function<void(SwitchRoom&)> work) {
    const std::lock_guard lock(m_roomLock);
    if (m_room) {
        asio::post(m_room->io(), [room = m_room.get(), work = std::move(work)] { work(*room); });
    }
}

// ---- SwitchSimulator

SwitchSimulator::SwitchSimulator(SwitchOptions options)
    : m_engine(std::make_unique<Engine>(std::move(options))) {}

SwitchSimulator::~SwitchSimulator() = default;

void SwitchSimulator::start() {
    m_engine->start();
}

void SwitchSimulator::stop() {
    m_engine->stop();
}

std::uint16_t SwitchSimulator::port() const noexcept {
    return m_engine->port();
}

void SwitchSimulator::run(Scenario scenario, PlayOptions options) {
    m_engine->post([scenario = std::move(scenario), options = std::move(options)](SwitchRoom& room) {
        room.play(scenario, options);
    });
}

void SwitchSimulator::setAnswering(const std::string& request, SwitchAnswering answering) {
    m_engine->post([request, answering](SwitchRoom& room) { room.setAnswering(request, answering); });
}

void SwitchSimulator::sendSystemStatus(const std::string& word) {
    m_engine->post([word](SwitchRoom& room) { room.sendSystemStatus(word); });
}

void SwitchSimulator::stopMonitors(const std::string& device) {
    m_engine->post([device](SwitchRoom& room) { room.stopMonitors(device); });
}

void SwitchSimulator::dropClients() {
    m_engine->post([](SwitchRoom& room) { room.dropClients(); });
}

std::vector<CallLogEntryEvent> SwitchSimulator::callLog(const std::string& device) const {
    return m_engine->callLog(device);
}

SwitchLog& SwitchSimulator::log() noexcept {
    return m_engine->log();
}

}  // namespace host
