#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "platform/framework/InvokerResponse.h"

namespace journaltest {

/// The response to one message, as the framework would send it. The test fails when it is used after its
/// completion, which ends a response's life. One thread.
class RecordingResponse final : public InvokerResponse {
public:
    explicit RecordingResponse(std::string requester = "client", std::string protocol = "opera_text")
        : m_requester(std::move(requester)), m_protocol(std::move(protocol)) {}

    [[nodiscard]] bool hasPayload() const noexcept { return m_payload.has_value(); }
    /// The payload that counts, the one that was set last; empty without one.
    [[nodiscard]] std::string payload() const { return m_payload.value_or(""); }
    [[nodiscard]] int completions() const noexcept { return m_completions; }

    void setPayload(const char* text, int length) override {
        EXPECT_EQ(m_completions, 0);
        m_payload.emplace(text, static_cast<std::size_t>(length));
    }
    void complete() override { EXPECT_EQ(++m_completions, 1); }
    [[nodiscard]] std::string getRequester() const override {
        EXPECT_EQ(m_completions, 0);
        return m_requester;
    }
    [[nodiscard]] std::string getRequestedProtocol() const override {
        EXPECT_EQ(m_completions, 0);
        return m_protocol;
    }

private:
    const std::string m_requester;
    const std::string m_protocol;
    std::optional<std::string> m_payload;
    int m_completions = 0;
};

}  // namespace journaltest
