#pragma once

#include <cstddef>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "bench/baseline/BaselineList.h"
#include "host/framework/FileDescriptor.h"

namespace bench {

/// The baseline's link to the switch: monitors one device over TCP, parses its events and follows its calls.
/// Not thread-safe. Errors: operations throw `std::system_error` or `std::runtime_error`.
class BaselineLink {
public:
    struct EndedCall {
        std::string number;
        std::string name;
        BaselineEntry::Call call;
    };

    /// Connects to "127.0.0.1:PORT", and starts the monitor.
    explicit BaselineLink(const std::string& address);

    [[nodiscard]] int descriptor() const noexcept { return m_socket.get(); }
    /// Reads what the switch has sent. Returns false if it has disconnected.
    [[nodiscard]] bool receive();
    /// Parses the received events up to the next one that ends a call; std::nullopt when all are parsed.
    [[nodiscard]] std::optional<EndedCall> nextEndedCall();

private:
    struct Call {
        std::string number;
        std::string name;
        std::time_t begin = 0;
    };

    std::optional<std::string_view> nextMessage();
    std::optional<EndedCall> follow(std::string_view xml);

    host::FileDescriptor m_socket;
    std::string m_received;
    std::size_t m_read = 0;
    std::unordered_map<std::string, Call> m_calls;
};

}  // namespace bench
