#include "host/config/WebOrigin.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace host {

std::optional<std::string> originOf(std::string_view url) {
    std::string text(url);
    const std::size_t scheme = text.find("://");
    if (scheme == std::string::npos || text.find_first_of("?#@ \\") != std::string::npos) {
        return std::nullopt;
    }
    std::string origin = text.substr(0, text.find('/', scheme + 3));
    std::transform(origin.begin(), origin.end(), origin.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    });
    const bool isSecure = origin.starts_with("https://");
    const std::string host = origin.substr(scheme + 3);
    if ((!isSecure && !origin.starts_with("http://")) || host.empty() || host.front() == ':' ||
        host.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789.-_:[]") != std::string::npos) {
        return std::nullopt;
    }
    const std::string_view usualPort = isSecure ? ":443" : ":80";
    if (origin.ends_with(usualPort)) {
        origin.resize(origin.size() - usualPort.size());
    }
    return origin;
}

std::optional<std::string> receiverOrigin(std::string_view url) {
    const std::size_t scheme = url.find("://");
    const bool isPrintable =
        std::all_of(url.begin(), url.end(), [](char each) { return each > ' ' && each < 127; });
    if (scheme == std::string_view::npos || !isPrintable ||
        url.find_first_of("#\\\"<>") != std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view host = url.substr(scheme + 3);
    host = host.substr(0, host.find_first_of("/?"));
    if (const std::size_t user = host.rfind('@'); user != std::string_view::npos) {
        host.remove_prefix(user + 1);
    }
    const std::size_t colon = host.find(':', host.find(']') == std::string_view::npos ? 0 : host.find(']'));
    if (colon != std::string_view::npos) {
        const std::string_view port = host.substr(colon + 1);
        unsigned number = 0;
        const auto [end, error] = std::from_chars(port.data(), port.data() + port.size(), number);
        if (error != std::errc() || end != port.data() + port.size() || number < 1 || number > 65535) {
            return std::nullopt;
        }
    }
    return originOf(std::string(url.substr(0, scheme + 3)) + std::string(host));
}

}  // namespace host
