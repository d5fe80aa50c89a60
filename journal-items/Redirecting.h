#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "journal-items/Sparse.h"

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

    [[nodiscard]] const std::string& getRedirectingNumber() const noexcept { return m_values.get().number; }
    void setRedirectingNumber(const std::string& number) { set(&Values::number, number); }

    [[nodiscard]] const std::string& getRedirectingName() const noexcept { return m_values.get().name; }
    void setRedirectingName(const std::string& name) { set(&Values::name, name); }

    /// The presentation restrictions of the number and the name; 0 means none. Only copied.
    [[nodiscard]] std::int32_t getRedirectingNumberPresentation() const noexcept {
        return m_values.get().numberPresentation;
    }
    void setRedirectingNumberPresentation(std::int32_t value) { set(&Values::numberPresentation, value); }
    [[nodiscard]] std::int32_t getRedirectingNamePresentation() const noexcept {
        return m_values.get().namePresentation;
    }
    void setRedirectingNamePresentation(std::int32_t value) { set(&Values::namePresentation, value); }

    /// The kind of number that a transferred call shows. Only copied.
    [[nodiscard]] std::int32_t getTransferNumberType() const noexcept {
        return m_values.get().transferNumberType;
    }
    void setTransferNumberType(std::int32_t type) { set(&Values::transferNumberType, type); }

    /// The reason of the redirection, in the switch's own numbers; 0 if unknown. Only copied.
    [[nodiscard]] std::int32_t getRedirectingReason() const noexcept { return m_values.get().reason; }
    void setRedirectingReason(std::int32_t reason) { set(&Values::reason, reason); }

    bool operator==(const Redirecting&) const = default;

private:
    struct Values {
        std::string number;
        std::string name;
        std::int32_t numberPresentation = 0;
        std::int32_t namePresentation = 0;
        std::int32_t transferNumberType = 0;
        std::int32_t reason = 0;

        bool operator==(const Values&) const = default;
    };

    template <typename Field>
    void set(Field Values::*field, const Field& value) {
        if (m_values.get().*field != value) {
            Values changed = m_values.get();
            changed.*field = value;
            m_values.set(std::move(changed));
        }
    }

    /// Few calls are redirected.
    Sparse<Values> m_values;
};
