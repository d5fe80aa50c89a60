#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "host/framework/OperaTextAdapter.h"
#include "platform/framework/FrameworkContext.h"

namespace host {

/// The framework as invokers see it: the proxies of the remote clients and the protocol adapters.
/// Thread-safe.
class HostFrameworkContext final : public FrameworkContext {
public:
    /// Registers `proxy` as the implementation of `interfaceName` by `clientName`. Returns false, with no
    /// change, if there is one already. Requires: `proxy` lives until `removeProxy`.
    bool registerProxy(const std::string& interfaceName, const std::string& clientName, Proxy& proxy);
    void removeProxy(const std::string& interfaceName, const std::string& clientName);

    // FrameworkContext
    [[nodiscard]] Proxy* findProxy(std::string& interfaceName, std::string& clientName) override;
    [[nodiscard]] ProtocolAdapter* findProtocolAdapter(std::string& protocolName) override;

private:
    // Stateless.
    OperaTextAdapter m_operaText;

    std::mutex m_mutex;
    // Guarded by m_mutex. Maps interface and client to proxy.
    std::map<std::pair<std::string, std::string>, Proxy*> m_proxies;
};

}  // namespace host
