#pragma once

#include <deque>
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

    [[nodiscard]] unsigned short port() const noexcept { return m_port; }

    /// Waits for the link to connect (again).
    void accept();
    /// The next message; it must be one of that name. Answers its invoke id.
    int expect(std::string_view name);
    /// The XML of the message that `expect` saw last.
    [[nodiscard]] const std::string& lastXml() const noexcept { return m_lastXml; }

    void send(int invokeId, std::string_view xml) const;
    void sendBytes(std::string_view bytes) const;
    void hangUp();

    /// Takes the first messages of a link with one monitor wish and answers only the MonitorStart.
    void startMonitor(const std::string& id);

private:
    [[nodiscard]] host::Frame nextFrame();

    int m_listener = -1;
    int m_socket = -1;
    unsigned short m_port = 0;
    host::FrameReader m_reader;
    std::string m_lastXml;
};

}  // namespace linktest
