#include "host/csta/requests/RequestOutcome.h"

#include <string_view>

#include "host/csta-wire/WireDocument.h"
#include "platform/csta/CSTAResponses.h"

namespace host {

namespace {

/// Returns `nullptr` for a response that has no class in the platform.
std::unique_ptr<CSTAResponse> responseNamed(std::string_view rootName) {
    if (rootName == "MonitorStopResponse") {
        return std::make_unique<CSTAMonitorStopResponse>();
    }
    if (rootName == "ChangeMonitorFilterResponse") {
        return std::make_unique<CSTAChangeMonitorFilterResponse>();
    }
    if (rootName == "SystemStatusResponse" || rootName == "SystemRegisterResponse") {
        return std::make_unique<CSTASystemStatusResponse>();
    }
    if (rootName == "EscapeResponse") {
        return std::make_unique<CSTAEscapeResponse>();
    }
    return nullptr;
}

}  // namespace

RequestOutcome RequestOutcome::withoutRefusal(const SwitchResponse& response) {
    switch (response.kind) {
        case SwitchResponse::Kind::eResponse: return {kOk, responseNamed(response.document->name())};
        case SwitchResponse::Kind::eTimedOut: return {kTimedOut, nullptr};
        default: return {kConnectionLost, nullptr};
    }
}

}  // namespace host
