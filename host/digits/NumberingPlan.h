#pragma once

#include <optional>
#include <string>

namespace i18n::phonenumbers {
class PhoneNumber;
}  // namespace i18n::phonenumbers

namespace host {

/// The public numbering plan as dialled from one country.
///
/// Constant after construction; any thread may call. The first object of a process loads the plans of all
/// countries (a few milliseconds).
class NumberingPlan {
public:
    /// `region` is a country, as two capital letters ("DE"). In an unsupported one, only numbers with "+" are
    /// understood.
    explicit NumberingPlan(std::string region);
    /// Loads the plans of all countries, so that the first object has them.
    static void load();

    [[nodiscard]] bool supportsRegion() const noexcept { return m_supported; }

    /// Returns the international form ("+4930123456") of a dialled number (digits, or "+" and digits), if it
    /// is one of:
    ///  - "+" or the country's international prefix, a country code, and a number of a possible length there;
    ///  - the country's trunk prefix and a number of a possible length;
    ///  - a valid number in the country's national format, which may have no trunk prefix.
    /// Returns std::nullopt for all others: local numbers without area code, emergency numbers, extensions,
    /// and texts of more than `limits::kMaxDigits` digits, for which the number library takes seconds.
    [[nodiscard]] std::optional<std::string> international(const std::string& dialled) const;

    /// Returns the digits to dial from the country for a number in international form; unchanged if the
    /// country has no single prefix for it.
    [[nodiscard]] std::string dialledFrom(const std::string& international) const;

    /// Returns a number in international form as it is written in the country: its own numbers in the
    /// national format ("030 123456"), those of others with their country code ("+44 20 7946 0123").
    /// Returns std::nullopt for a text that `international` does not return as it is.
    [[nodiscard]] std::optional<std::string> written(const std::string& international) const;

    /// True for an emergency number of the country, exactly as dialled, and in every country for 112 and 911.
    /// The first call of a process takes some milliseconds.
    [[nodiscard]] bool isEmergencyNumber(const std::string& dialled) const;

private:
    /// Reads a number that is one of those of `international`; returns false for all others.
    [[nodiscard]] bool read(const std::string& dialled, i18n::phonenumbers::PhoneNumber& number) const;
    [[nodiscard]] bool isUnderstood(const std::string& dialled,
                                    const i18n::phonenumbers::PhoneNumber& number) const;

    // Constant after construction.
    const std::string m_region;
    const bool m_supported;
    const std::string m_trunkPrefix;
};

}  // namespace host
