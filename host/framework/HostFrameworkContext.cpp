#include "host/framework/HostFrameworkContext.h"

namespace host {

bool HostFrameworkContext::registerProxy(const std::string& interfaceName, const std::string& clientName,
                                         Proxy& proxy) {
    const std::lock_guard lock(m_mutex);
    return m_proxies.emplace(std::pair(interfaceName, clientName), &proxy).second;
}

void HostFrameworkContext::removeProxy(const std::string& interfaceName, const std::string& clientName) {
    const std::lock_guard lock(m_mutex);
    m_proxies.erase(std::pair(interfaceName, clientName));
}

Proxy* HostFrameworkContext::findProxy(std::string& interfaceName, std::string& clientName) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_proxies.find(std::pair(interfaceName, clientName));
    return found == m_proxies.end() ? nullptr : found->second;
}

ProtocolAdapter* HostFrameworkContext::findProtocolAdapter(std::string& protocolName) {
    return protocolName == OperaTextAdapter::kName ? &m_operaText : nullptr;
}

}  // namespace host
