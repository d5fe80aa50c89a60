#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/digits/NumberingPlan.h"

namespace host {

/// The forms in which a switch takes the numbers of the public numbering plan.
enum class DialForm {
    eNational,       ///< as dialled in the country: "030123456", "0044201234567"
    eInternational,  ///< "+4930123456"
};

/// Converts a number or an address, as a person or an entry of the journal writes it, to what the switch is
/// to dial. Constant after construction; any thread may call.
class Dialling {
public:
    struct Rules {
        /// The country of the numbering plan, as two capital letters.
        std::string region = "DE";
        std::vector<std::string> featureAccessCodes{};
        /// Dialled before a number of the public numbering plan, unless that begins with "+"; empty if the
        /// switch needs none.
        std::string outsideLine{};
        DialForm form = DialForm::eNational;
    };

    explicit Dialling(Rules rules);

    struct Target {
        std::string text;
        /// The call would reach an emergency service.
        bool isEmergency = false;
    };
    /// Returns `std::nullopt` for a text that is neither a number nor a sip: address.
    ///  1. "sip:" and "sips:" addresses are dialled as they are; "tel:" is removed.
    ///  2. Blanks, dashes, dots, slashes, parentheses and invisible characters are removed.
    ///  3. Emergency numbers of the country, 112 and 911 are dialled as they are: alone, or after any
    ///     sequence of the outside-line code, feature access codes, codes of the network ("*31#", "#31#",
    ///     "*67"), "+" and "0".
    ///  4. So are extensions (up to five digits), numbers with "*" or "#" or with a feature access code, and
    ///     numbers that the numbering plan does not know.
    ///  5. Numbers of the numbering plan get the form of the rules, after the outside-line code.
    [[nodiscard]] std::optional<Target> target(std::string_view text) const;

private:
    [[nodiscard]] bool reachesEmergencyService(const std::string& dialled) const;

    // Constant after construction.
    const Rules m_rules;
    const NumberingPlan m_plan;
};

}  // namespace host
