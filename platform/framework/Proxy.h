#pragma once

#include "platform/framework/Executable.h"

class ProxyRequest;

/// Stands inside the process for a remote client's interface. Made by an exported factory that returns it as
/// `void*` pointing at this base; owned by the framework, which keeps it until the client is gone and the
/// proxy is no longer subscribed anywhere.
class Proxy : public Executable {
public:
    /// Called once before any callback; `request` is borrowed and outlives the proxy.
    virtual void initProxy(ProxyRequest& request) = 0;
};
