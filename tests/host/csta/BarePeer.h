#pragma once

#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <string>
#include <string_view>

#include "host/csta-wire/Frame.h"
#include "host/csta-wire/WireDocument.h"
#include "tests/support/WirePeer.h"

namespace linktest {

/// A switch that is driven by the test.
class BarePeer : public linktest::WirePeer {
public:
    [[nodiscard]] unsigned short port() const { return m_listener.local_endpoint().port(); }
    /// Waits for the link to connect (again).
    void accept() {
        hangUp();
        m_listener.accept(m_stream.socket());
    }
    /// Expects a message of that name and returns its invoke id. Requests of snapshots before it get no
    /// response.
    int expect(std::string_view name) {
        for (;;) {
            const host::Frame frame = next();
            lastXml = frame.xml;
            std::string fault;
            const auto document = host::WireDocument::parse(lastXml, fault);
            if (document && document->name() == "SnapshotDevice" && name != "SnapshotDevice") {
                continue;
            }
            EXPECT_EQ(document ? document->name() : fault, name);
            return frame.invokeId;
        }
    }
    /// Expects the first requests of a link. Returns the invoke id of the last one,
    /// GetSwitchingFunctionDevices.
    int greet() {
        expect("RequestSystemStatus");
        expect("SystemRegister");
        return expect("GetSwitchingFunctionDevices");
    }
    /// Expects a MonitorStart and responds to it.
    void startMonitor(const std::string& id) {
        send(expect("MonitorStart"), "<MonitorStartResponse><monitorCrossRefID>" + id +
                                         "</monitorCrossRefID></MonitorStartResponse>");
    }

    /// The last message of `expect`.
    std::string lastXml;

private:
    asio::io_context m_io;
    asio::ip::tcp::acceptor m_listener{m_io, {asio::ip::address_v4::loopback(), 0}};
};

inline std::string frame(int id, const std::string& xml) {
    return host::encodeFrame(id, xml).value();
}

inline std::string delivered(const std::string& monitor, const std::string& caller) {
    return frame(9999, "<DeliveredEvent><monitorCrossRefID>" + monitor +
                           "</monitorCrossRefID><callingDevice><deviceIdentifier>" + caller +
                           "</deviceIdentifier></callingDevice><cause>newCall</cause></DeliveredEvent>");
}

}  // namespace linktest
