#pragma once

#include <string>
#include <utility>

/// The switch's response to a request. A plain value. The response to a refused request has the class of the
/// request's response and is marked as an error.
class CSTAResponse {
public:
    CSTAResponse() = default;
    virtual ~CSTAResponse() = default;

    /// True for a response that refuses the request.
    [[nodiscard]] bool isErrorResponse() const noexcept { return !m_errorCategory.empty(); }
    /// The ECMA-323 values of a refusal ("operation", "invalidDeviceID"); empty for a success.
    [[nodiscard]] const std::string& getErrorCategory() const noexcept { return m_errorCategory; }
    [[nodiscard]] const std::string& getErrorValue() const noexcept { return m_errorValue; }
    /// Requires: `category` is not empty.
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
