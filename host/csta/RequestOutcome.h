#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "host/csta/PendingRequests.h"
#include "platform/csta/CSTAResponse.h"

namespace host {

/// What a request of a service comes back with.
struct RequestOutcome {
    // Response codes. Services only tell 0 from the rest.
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

    /// A refusal has the class of the answer that was hoped for.
    template <typename Response>
    [[nodiscard]] static RequestOutcome refused(std::string category, std::string value) {
        auto response = std::make_unique<Response>();
        response->setError(category.empty() ? "unspecified" : std::move(category), std::move(value));
        return {kOk, std::move(response)};
    }

    /// For an answer that is not the one hoped for: a refusal, an answer to something else (in the class of that, or
    /// none), or no answer.
    template <typename Response>
    [[nodiscard]] static RequestOutcome of(const Answer& answer) {
        return answer.kind == Answer::Kind::eRefused ? refused<Response>(answer.category, answer.value)
                                                     : withoutRefusal(answer);
    }

private:
    [[nodiscard]] static RequestOutcome withoutRefusal(const Answer& answer);
};

/// Called exactly once, by the reader thread.
using CompleteRequest = std::function<void(RequestOutcome)>;

}  // namespace host
