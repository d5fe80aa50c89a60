#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "host/framework/OperaTextAdapter.h"
#include "platform/framework/FrameworkContext.h"

namespace host {

/// What invokers find: the proxies of the remote clients, and the protocol adapters. Any thread may call.
class HostFrameworkContext final : public FrameworkContext {
public:
    /// Makes `proxy` the one that stands for `clientName`'s implementation of `interfaceName`. Borrowed until
    /// `removeProxy`. False, and nothing changes, when there is one already.
    bool registerProxy(const std::string& interfaceName, const std::string& clientName, Proxy& proxy);
    void removeProxy(const std::string& interfaceName, const std::string& clientName);

    // FrameworkContext
    [[nodiscard]] Proxy* findProxy(std::string& interfaceName, std::string& clientName) override;
    [[nodiscard]] ProtocolAdapter* findProtocolAdapter(std::string& protocolName) override;

private:
    // Without state.
    OperaTextAdapter m_operaText;

    std::mutex m_mutex;
    // Guarded by m_mutex: interface and client to proxy.
    std::map<std::pair<std::string, std::string>, Proxy*> m_proxies;
};

}  // namespace host
