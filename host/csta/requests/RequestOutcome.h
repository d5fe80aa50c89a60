#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "host/csta/requests/PendingRequests.h"
#include "platform/csta/CSTAResponse.h"

namespace host {

/// The result of a service's request.
struct RequestOutcome {
    // Response codes. Services only distinguish 0 from the others.
    static constexpr int kOk = 0;
    static constexpr int kNotCarriedOut = -1;
    static constexpr int kTimedOut = -2;
    static constexpr int kConnectionLost = -3;

    int code = kNotCarriedOut;
    std::unique_ptr<CSTAResponse> response;

    template <typename Response, typename... Arguments>
    [[nodiscard]] static RequestOutcome ok(Arguments&&... arguments) {
        return {kOk, std::make_unique<Response>(std::forward<Arguments>(arguments)...)};
    }

    /// A refusal, as an error response of the expected class.
    template <typename Response>
    [[nodiscard]] static RequestOutcome refused(std::string category, std::string value) {
        auto response = std::make_unique<Response>();
        response->setError(category.empty() ? "unspecified" : std::move(category), std::move(value));
        return {kOk, std::move(response)};
    }

    /// Requires: `response` is not the expected one. It may be a refusal, a response of another kind (the
    /// result has its class, or none), a timeout or a lost connection.
    template <typename Response>
    [[nodiscard]] static RequestOutcome of(const SwitchResponse& response) {
        return response.kind == SwitchResponse::Kind::eRefused
                   ? refused<Response>(response.category, response.value)
                   : withoutRefusal(response);
    }

private:
    [[nodiscard]] static RequestOutcome withoutRefusal(const SwitchResponse& response);
};

/// Called exactly once, on the reader thread.
using CompleteRequest = std::function<void(RequestOutcome)>;

}  // namespace host
