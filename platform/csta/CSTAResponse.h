#pragma once

#include <string>
#include <utility>

/// What the switch answered to a request. A plain value. A refused request is answered with the response class of
/// the request, marked as an error response.
class CSTAResponse {
public:
    CSTAResponse() = default;
    virtual ~CSTAResponse() = default;

    /// True for an answer that refuses the request.
    [[nodiscard]] bool isErrorResponse() const noexcept { return !m_errorCategory.empty(); }
    /// The standard's words of a refusal ("operation", "invalidDeviceID"); empty for a success.
    [[nodiscard]] const std::string& getErrorCategory() const noexcept { return m_errorCategory; }
    [[nodiscard]] const std::string& getErrorValue() const noexcept { return m_errorValue; }
    /// `category` must not be empty.
    void setError(std::string category, std::string value) {
        m_errorCategory = std::move(category);
        m_errorValue = std::move(value);
    }

protected:
    CSTAResponse(const CSTAResponse&) = default;
    CSTAResponse& operator=(const CSTAResponse&) = default;

private:
    std::string m_errorCategory;
    std::string m_errorValue;
};
