#include "host/csta/association/SystemStatusValues.h"

#include "platform/texts/communicationsServiceTexts.h"

namespace host {

std::string platformStatus(std::string_view word) {
    using namespace communicationsServiceTexts;
    if (word == "initializing") {
        return systemState_reset;
    }
    if (word == "enabled") {
        return systemState_enabled;
    }
    if (word == "normal") {
        return systemState_normal;
    }
    if (word == "disabled") {
        return systemState_disabled;
    }
    if (word == "partiallyDisabled") {
        return systemState_partiallyDisabled;
    }
    return std::string(word);
}

bool requiresMonitorRestart(std::string_view word) noexcept {
    return word == "initializing" || word == "disabled";
}

bool dropsCalls(std::string_view word) noexcept {
    return word == "initializing" || word == "disabled" || word == "partiallyDisabled" || word == "cleanup" ||
           word == "reset" || word == "stopped";
}

bool isInService(std::string_view word) noexcept {
    return word == "enabled" || word == "normal";
}

}  // namespace host
