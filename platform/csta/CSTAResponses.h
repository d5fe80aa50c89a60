#pragma once

#include <string>
#include <utility>

#include "platform/csta/CSTAResponse.h"

class CSTASystemStatusResponse final : public CSTAResponse {};

/// The monitor is on. Its cross reference has at most 19 characters.
class CSTAMonitorStartResponse final : public CSTAResponse {
public:
    explicit CSTAMonitorStartResponse(std::string crossRefId = {}) : m_crossRefId(std::move(crossRefId)) {}
    [[nodiscard]] const std::string& GetMonitorCrossRefID() const noexcept { return m_crossRefId; }

private:
    std::string m_crossRefId;
};

class CSTAMonitorStopResponse final : public CSTAResponse {};
class CSTAChangeMonitorFilterResponse final : public CSTAResponse {};
class CSTAEscapeResponse final : public CSTAResponse {};
