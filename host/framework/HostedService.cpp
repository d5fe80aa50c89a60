#include "host/framework/HostedService.h"

#include <utility>

#include "host/framework/LineContext.h"
#include "host/framework/Strand.h"

namespace host {

HostedService::HostedService(std::unique_ptr<Service> service, Strand& strand, LineContext& context)
    : m_service(std::move(service)), m_strand(strand), m_context(context) {}

HostedService::~HostedService() {
    stop();
}

void HostedService::start() {
    m_strand.runAndWait([this] { m_service->init(m_context); });
    m_started = true;
    m_runner = std::thread([this] { m_service->run(); });
}

void HostedService::stop() {
    if (!m_service) {
        return;
    }
    m_strand.runAndWait([this] {
        if (m_started) {
            m_service->shutdown();
        }
    });
    if (m_runner.joinable()) {
        m_runner.join();
    }
    m_strand.runAndWait([this] {
        m_context.deleteTimersOf(*m_service);
        m_service.reset();
    });
}

}  // namespace host
