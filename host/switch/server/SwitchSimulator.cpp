#include "host/switch/server/SwitchSimulator.h"

#include <utility>

#include "host/switch/server/SwitchCore.h"
#include "host/switch/server/SwitchSimulatorImpl.h"

namespace host {

SwitchSimulator::SwitchSimulator(SwitchOptions options)
    : m_impl(std::make_unique<SwitchSimulatorImpl>(std::move(options))) {}

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
    m_impl->post([scenario = std::move(scenario), options = std::move(options)](SwitchCore& core) {
        core.play(scenario, options);
    });
}

void SwitchSimulator::run(TrafficOptions traffic, TrafficListeners listeners) {
    m_impl->post([traffic = std::move(traffic), listeners = std::move(listeners)](SwitchCore& core) {
        core.play(traffic, listeners);
    });
}

void SwitchSimulator::setResponseMode(const std::string& request, ResponseMode mode) {
    m_impl->post([request, mode](SwitchCore& core) { core.server().setResponseMode(request, mode); });
}

void SwitchSimulator::sendSystemStatus(const std::string& word) {
    m_impl->post([word](SwitchCore& core) { core.server().sendSystemStatus(word); });
}

void SwitchSimulator::stopMonitors(const std::string& device) {
    m_impl->post([device](SwitchCore& core) { core.server().stopMonitors(device); });
}

void SwitchSimulator::dropClients() {
    m_impl->post([](SwitchCore& core) { core.server().dropClients(); });
}

std::vector<CallLogEntryEvent> SwitchSimulator::callLog(const std::string& device) const {
    return m_impl->callLog(device);
}

}  // namespace host
