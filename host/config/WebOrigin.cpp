#include "host/config/WebOrigin.h"

#include <algorithm>

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

}  // namespace host
