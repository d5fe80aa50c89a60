#pragma once

#include <string>

class ProtocolAdapter;
class Proxy;

/// The framework as an invoker sees it. Any thread may call.
class FrameworkContext {
public:
    FrameworkContext() = default;
    FrameworkContext(const FrameworkContext&) = delete;
    FrameworkContext& operator=(const FrameworkContext&) = delete;
    virtual ~FrameworkContext() = default;

    /// The proxy for `clientName`'s implementation of `interfaceName` ("JournalServiceObserverIfc"), or null.
    /// Borrowed: alive while a message of that client is handled, and as long as it is subscribed.
    [[nodiscard]] virtual Proxy* findProxy(std::string& interfaceName, std::string& clientName) = 0;

    /// The adapter of a protocol by name, or null. Borrowed, alive as long as the framework.
    [[nodiscard]] virtual ProtocolAdapter* findProtocolAdapter(std::string& protocolName) = 0;
};
