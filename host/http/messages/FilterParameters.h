#pragma once

#include <chrono>

#include "host/clock/SystemClock.h"
#include "host/history/FilterText.h"
#include "host/http/messages/HttpError.h"

namespace host {

/// Returns the result of `read(text)`, which reads the parameters of a request with a `FilterText` of the
/// server's time and zone. Throws `HttpError` 400 for a parameter that cannot be read.
template <typename Read>
[[nodiscard]] auto filtersIn(const Zone& zone, Read&& read) {
    try {
        return read(
            FilterText(std::chrono::sys_seconds(std::chrono::seconds(SystemClock().getSeconds())), zone));
    } catch (const FilterError& error) {
        throw HttpError(400, "bad-parameter", error.what());
    }
}

}  // namespace host
