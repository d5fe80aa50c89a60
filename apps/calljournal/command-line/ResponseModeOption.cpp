#include "apps/calljournal/command-line/ResponseModeOption.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "host/csta-wire/WireDocument.h"

namespace calljournal {
namespace {

constexpr std::array<std::pair<std::string_view, host::ResponseMode>, 6> kWords{{
    {"refuse", host::ResponseMode::eRefusal},
    {"wrong", host::ResponseMode::eWrongResponse},
    {"never", host::ResponseMode::eNoResponse},
    {"hang-up", host::ResponseMode::eDisconnect},
    {"lack", host::ResponseMode::eNotSupported},
    {"late", host::ResponseMode::eLate},
}};

std::optional<std::pair<std::string, host::ResponseMode>> read(const std::string& text) {
    const std::string request = text.substr(0, text.find('='));
    const std::string_view mode = std::string_view(text).substr(std::min(text.size(), request.size() + 1));
    const auto* const word =
        std::find_if(kWords.begin(), kWords.end(), [mode](const auto& each) { return each.first == mode; });
    if (word == kWords.end() || host::messageKindOf(request) != host::MessageKind::eRequest) {
        return std::nullopt;
    }
    return std::pair(request, word->second);
}

}  // namespace

void addResponseModeOption(CLI::App& app, std::vector<std::string>& values) {
    app.add_option(
           "--answer", values,
           "respond wrongly to requests of one kind: MonitorStart=HOW, with HOW refuse, wrong, never, "
           "hang-up, lack (the switch does not have the service) or late")
        ->type_name("REQUEST=HOW")
        ->allow_extra_args(false)
        ->check(std::function<std::string(const std::string&)>([](const std::string& text) {
            return read(text) ? std::string()
                              : text +
                                    " is not REQUEST=HOW (such as MonitorStart=refuse; HOW is refuse, wrong, "
                                    "never, hang-up, lack or late)";
        }));
}

std::map<std::string, host::ResponseMode> readResponseMode(const std::vector<std::string>& values) {
    std::map<std::string, host::ResponseMode> modes;
    for (const std::string& text : values) {
        if (const auto one = read(text)) {
            modes[one->first] = one->second;
        }
    }
    return modes;
}

}  // namespace calljournal
