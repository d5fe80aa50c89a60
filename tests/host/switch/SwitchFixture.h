#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "host/csta-wire/WireDocument.h"
#include "host/switch/scenario/ScenarioParser.h"
#include "host/switch/server/SwitchSimulator.h"
#include "tests/support/WirePeer.h"

namespace switchtest {

/// A client of a simulated switch that writes its own messages and reads everything.
class Client : public linktest::WirePeer {
public:
    explicit Client(unsigned short port) {
        m_stream.connect(asio::ip::tcp::endpoint(asio::ip::address_v4::loopback(), port));
    }

    /// Returns the response to a request. Events before it are returned by `events`.
    [[nodiscard]] std::string request(std::string_view xml) {
        send(++m_lastId, xml);
        host::Frame frame;
        while ((frame = next()).invokeId != m_lastId && !frame.xml.empty()) {
            record(frame);
        }
        return frame.xml;
    }
    /// Starts a monitor and returns its id.
    std::string monitor(const std::string& device) {
        const std::string response = request("<MonitorStart><monitorObject><deviceObject>" + device +
                                             "</deviceObject></monitorObject></MonitorStart>");
        std::string fault;
        const auto document = host::WireDocument::parse(response, fault).value();
        std::string id = host::childText(document.root(), "monitorCrossRefID");
        m_devices[id] = device;
        return id;
    }
    /// The events of each monitored device since the last call: "2001 Delivered/alerting Established
    /// Cleared/null; 4711 Held". The state of the device's own connection is omitted if it is "connected",
    /// and is "-" if the event has none.
    std::string events() {
        static_cast<void>(request("<RequestSystemStatus/>"));
        std::string all;
        for (const auto& [device, events] : std::exchange(m_events, {})) {
            all.append(all.empty() ? "" : "; ").append(device).append(events);
        }
        return all;
    }
    /// The XML of the last events.
    [[nodiscard]] std::string eventsXml() {
        static_cast<void>(events());
        return std::exchange(m_xml, {});
    }

private:
    void record(const host::Frame& frame) {
        std::string fault;
        const auto document = host::WireDocument::parse(frame.xml, fault).value();
        EXPECT_EQ(frame.invokeId, host::Frame::kEventInvokeId);
        const std::string name(document.name().substr(0, document.name().size() - 5));
        const std::string state = host::childText(document.root(), "localConnectionInfo");
        m_events[m_devices[host::childText(document.root(), "monitorCrossRefID")]]
            .append(name == "ConnectionCleared" ? " Cleared" : " " + name)
            .append(state == "connected" ? "" : "/" + (state.empty() ? "-" : state));
        m_xml += frame.xml;
    }

    int m_lastId = 0;
    std::map<std::string, std::string> m_devices;
    std::map<std::string, std::string> m_events;
    std::string m_xml;
};

/// A simulator at a free port.
class Switch : public testing::Test {
protected:
    Switch() { simulator.start(); }

    void play(const std::string& text, const host::PlayOptions& options = {}) {
        simulator.run(host::parseScenario(text), options);
    }
    /// Returns when the last event is on its way.
    static void playToEnd(host::SwitchSimulator& at, const std::string& text,
                          host::PlayOptions options = {}) {
        const auto over = std::make_shared<std::promise<void>>();
        options.finished = [over] { over->set_value(); };
        at.run(host::parseScenario(text), options);
        ASSERT_EQ(over->get_future().wait_for(linktest::kPatience), std::future_status::ready) << text;
    }

    host::SwitchSimulator simulator{{.port = 0}};
};

}  // namespace switchtest
