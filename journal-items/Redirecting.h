#pragma once

#include <cstdint>
#include <string>

/// Mix-in of an occurrence with the last redirection device: its number and name. A plain value without
/// synchronisation. Both texts are empty for a call that was not redirected.
class Redirecting {
public:
    Redirecting() = default;
    Redirecting(const Redirecting&) = default;
    Redirecting(Redirecting&&) noexcept = default;
    Redirecting& operator=(const Redirecting&) = default;
    Redirecting& operator=(Redirecting&&) noexcept = default;
    virtual ~Redirecting() = default;

    [[nodiscard]] const std::string& getRedirectingNumber() const noexcept { return m_redirectingNumber; }
    void setRedirectingNumber(const std::string& number) { m_redirectingNumber = number; }

    [[nodiscard]] const std::string& getRedirectingName() const noexcept { return m_redirectingName; }
    void setRedirectingName(const std::string& name) { m_redirectingName = name; }

    /// The presentation restrictions of the number and the name; 0 means none. Only copied.
    [[nodiscard]] std::int32_t getRedirectingNumberPresentation() const noexcept {
        return m_numberPresentation;
    }
    void setRedirectingNumberPresentation(std::int32_t value) noexcept { m_numberPresentation = value; }
    [[nodiscard]] std::int32_t getRedirectingNamePresentation() const noexcept { return m_namePresentation; }
    void setRedirectingNamePresentation(std::int32_t value) noexcept { m_namePresentation = value; }

    /// The kind of number that a transferred call shows. Only copied.
    [[nodiscard]] std::int32_t getTransferNumberType() const noexcept { return m_transferNumberType; }
    void setTransferNumberType(std::int32_t type) noexcept { m_transferNumberType = type; }

    /// The reason of the redirection, in the switch's own numbers; 0 if unknown. Only copied.
    [[nodiscard]] std::int32_t getRedirectingReason() const noexcept { return m_reason; }
    void setRedirectingReason(std::int32_t reason) noexcept { m_reason = reason; }

    bool operator==(const Redirecting&) const = default;

private:
    std::string m_redirectingNumber;
    std::string m_redirectingName;
    std::int32_t m_numberPresentation = 0;
    std::int32_t m_namePresentation = 0;
    std::int32_t m_transferNumberType = 0;
    std::int32_t m_reason = 0;
};
