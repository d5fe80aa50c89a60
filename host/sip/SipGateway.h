#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "host/sip/PhoneStatus.h"
#include "host/sip/SipAccount.h"

namespace host {

/// Settings of a SIP gateway. A plain value.
struct SipGatewayOptions {
    SipAccount account;
    /// For the configuration of the telephone.
    std::filesystem::path directory;
    /// The address of the CSTA link. Port 0 selects a free one.
    Endpoint listen{"127.0.0.1", 0};
    std::string edition = "ed4";
};

/// A CSTA switch in front of a SIP telephone, with one monitored device: the user of the account.
///
/// Call from the owner's thread. All work is done on one thread of the gateway.
class SipGateway {
public:
    /// Throws `std::runtime_error` with a text for the user if the telephone is not installed, for example.
    explicit SipGateway(SipGatewayOptions options);
    /// Calls `stop`.
    ~SipGateway();
    SipGateway(const SipGateway&) = delete;
    SipGateway& operator=(const SipGateway&) = delete;

    /// Starts the telephone, then listens. A telephone that is not there within some seconds comes later.
    /// Throws `std::system_error` if the address is not available.
    void start();
    /// Hangs up, ends the telephone, and reports the ends of its calls to the clients, which stay connected.
    /// Idempotent, as `stop`.
    void endCalls();
    /// `endCalls`, then closes the connections.
    void stop();

    /// The address of the CSTA link. Valid after `start`.
    [[nodiscard]] Endpoint endpoint() const;
    [[nodiscard]] std::string device() const;
    /// The telephone and its registration. Any thread may call.
    [[nodiscard]] PhoneState phoneState() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace host
