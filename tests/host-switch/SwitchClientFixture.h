#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta-wire/FrameReader.h"
#include "host/switch/SwitchSimulator.h"

namespace switchtest {

/// A client of the simulated switch that writes its own messages and reads everything; driven by the test.
class RawClient {
public:
    explicit RawClient(unsigned short port);
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;
    ~RawClient();

    void send(int invokeId, std::string_view xml) const;
    void sendBytes(std::string_view bytes) const;
    /// The next message; a test failure and an empty frame when none comes.
    [[nodiscard]] host::Frame next();
    /// The next messages' names, with the state of the own phone for events: "Delivered alerting"; for a client that
    /// monitors several devices with the device, too: "2001 Delivered alerting".
    [[nodiscard]] std::vector<std::string> nextNames(std::size_t number);
    /// The names of all that has come since, with commas between; `invokeId` is for a question behind it.
    [[nodiscard]] std::string heardUpTo(int invokeId);
    /// Sends the request and answers what comes back, which must carry its id.
    [[nodiscard]] std::string ask(int invokeId, std::string_view xml);
    /// Starts a monitor and answers its id.
    [[nodiscard]] std::string monitor(const std::string& device, const std::string& filter = {});
    /// True when the switch has closed the connection.
    [[nodiscard]] bool isClosed() const;

private:
    [[nodiscard]] std::string nameOf(const host::Frame& frame);

    int m_socket = -1;
    host::FrameReader m_reader;
    std::map<std::string, std::string> m_devices;
};

/// A simulator at a free port.
class Switch : public testing::Test {
protected:
    Switch() { simulator.start(); }

    void play(const std::string& text) { simulator.run(host::Scenario::parse(text)); }
    /// Returns when the last event is on its way.
    void playToEnd(const std::string& text, host::PlayOptions options = {});
    [[nodiscard]] static host::SwitchOptions anyPort();

    host::SwitchSimulator simulator{anyPort()};
};

}  // namespace switchtest
