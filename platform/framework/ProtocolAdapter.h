#pragma once

#include <string>

class Method;

/// Reads and writes `Method` objects in one text protocol. Any thread may call; an adapter has no state.
class ProtocolAdapter {
public:
    ProtocolAdapter() = default;
    ProtocolAdapter(const ProtocolAdapter&) = delete;
    ProtocolAdapter& operator=(const ProtocolAdapter&) = delete;
    virtual ~ProtocolAdapter() = default;

    /// Returns false, with `method` unchanged, if `text` is not a message of the protocol.
    [[nodiscard]] virtual bool decode(const std::string& text, Method& method) const = 0;
    [[nodiscard]] virtual std::string encode(const Method& method) const = 0;
};
