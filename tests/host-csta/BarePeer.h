#pragma once

#include <string>
#include <string_view>

#include "host/csta-wire/FrameReader.h"

namespace linktest {

/// A switch of few words, driven by the test itself: it says exactly what the test tells it to. Everything waits for
/// a limited time and then fails the test.
class BarePeer {
public:
    BarePeer();
    BarePeer(const BarePeer&) = delete;
    BarePeer& operator=(const BarePeer&) = delete;
    ~BarePeer();

    [[nodiscard]] unsigned short port() const;

    /// Waits for the link to connect (again).
    void accept();
    /// The next message; it must be one of that name. Answers its invoke id.
    int expect(std::string_view name);
    /// The XML of the message that `expect` saw last.
    [[nodiscard]] const std::string& lastXml() const noexcept { return m_last.xml; }

    void send(int invokeId, std::string_view xml) const;
    void sendBytes(std::string_view bytes) const;
    void hangUp();

    /// Takes what every link says first. Answers the invoke id of the last of these, which asks for the devices.
    int greet();
    /// Takes a MonitorStart and answers it.
    void startMonitor(const std::string& id);

private:
    int m_listener;
    int m_socket = -1;
    host::FrameReader m_reader;
    host::Frame m_last;
};

}  // namespace linktest
