#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/framework/FileDescriptor.h"

namespace bench {

/// A subscribed observer of a server: a remote client on the socket of its data directory, or an event stream
/// over HTTP. Gives the bytes as they come and does not split them into messages, so that it takes little
/// time from the server.
///
/// Not thread-safe. Errors: operations throw `std::system_error` or `std::runtime_error`.
class ObserverSocket {
public:
    enum class Kind { eRemote, eStream };

    /// Connects and subscribes. Returns when the server has confirmed the subscription.
    ObserverSocket(Kind kind, const std::filesystem::path& data);

    [[nodiscard]] int descriptor() const noexcept { return m_socket.get(); }
    /// Returns the bytes that have come; empty if there are none. They stay valid until the next call.
    [[nodiscard]] std::string_view receive();

private:
    void subscribeRemote(const std::filesystem::path& data);
    void subscribeStream(const std::filesystem::path& data);
    void sendAll(std::string_view bytes);
    void awaitBytes(std::string_view expected);

    host::FileDescriptor m_socket;
    std::vector<char> m_chunk;
};

}  // namespace bench
