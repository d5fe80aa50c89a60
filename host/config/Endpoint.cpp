#include "host/config/Endpoint.h"

#include <charconv>
#include <system_error>

namespace host {
namespace {

std::optional<std::uint16_t> parsePort(std::string_view text) {
    std::uint16_t port = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), port);
    if (result.ec != std::errc{} || result.ptr != text.data() + text.size()) {
        return std::nullopt;
    }
    return port;
}

bool isHost(std::string_view text, bool inBrackets) {
    const std::string_view forbidden = inBrackets ? " \t[]" : " \t[]:/";
    return !text.empty() && text.find_first_of(forbidden) == std::string_view::npos;
}

}  // namespace

std::string Endpoint::text() const {
    const bool brackets = host.find(':') != std::string::npos;
    return (brackets ? '[' + host + ']' : host) + ':' + std::to_string(port);
}

std::optional<Endpoint> parseEndpoint(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view host = text.substr(0, colon);
    const bool inBrackets = host.size() > 2 && host.front() == '[' && host.back() == ']';
    if (inBrackets) {
        host = host.substr(1, host.size() - 2);
    }
    const auto port = parsePort(text.substr(colon + 1));
    if (!port || !isHost(host, inBrackets)) {
        return std::nullopt;
    }
    return Endpoint{std::string(host), *port};
}

}  // namespace host
