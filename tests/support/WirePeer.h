#pragma once

#include <gtest/gtest.h>

#include <asio/ip/tcp.hpp>
#include <chrono>
#include <optional>
#include <string_view>

#include "host/csta-wire/FrameReader.h"

namespace linktest {

/// The time that a test waits for an event that must happen.
inline constexpr std::chrono::seconds kPatience{20};

/// One end of a connection between a switch and its client. It sends exactly the bytes that the test
/// gives it.
class WirePeer {
public:
    void send(int invokeId, std::string_view xml) { sendBytes(host::encodeFrame(invokeId, xml).value()); }
    void sendBytes(std::string_view bytes) { m_stream << bytes << std::flush; }
    /// The next message; a failed test and an empty frame when none comes.
    [[nodiscard]] host::Frame next() {
        m_stream.expires_after(kPatience);
        std::optional<host::Frame> frame;
        for (char byte = 0; !(frame = m_reader.next()) && m_stream.get(byte);) {
            m_reader.feed(std::string_view(&byte, 1));
        }
        EXPECT_TRUE(frame) << "the other end says nothing more";
        return frame.value_or(host::Frame());
    }
    /// Waits for the other end to hang up.
    [[nodiscard]] bool isHungUp() {
        m_stream.expires_after(kPatience);
        return m_stream.get() < 0 && m_stream.error() == asio::error::eof;
    }
    void hangUp() {
        m_stream.close();
        m_stream.clear();
        m_reader = host::FrameReader();
    }

protected:
    asio::ip::tcp::iostream m_stream;

private:
    host::FrameReader m_reader;
};

}  // namespace linktest
