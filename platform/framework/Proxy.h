#pragma once

#include "platform/framework/Executable.h"

class ProxyRequest;

/// Represents a remote client's interface in the process. An exported factory makes it and returns it as
/// `void*` to this base; the framework owns it until the client has disconnected and the proxy is not
/// subscribed any more.
class Proxy : public Executable {
public:
    /// Called once before any callback; `request` is borrowed and outlives the proxy.
    virtual void initProxy(ProxyRequest& request) = 0;
};
