#pragma once

#include <array>
#include <optional>
#include <string>

#include "host/digits/NumberForms.h"
#include "host/digits/NumberingPlan.h"

class DigitAnalysisServiceIfc;

namespace host {

/// A language in which places are named.
enum class PlaceLanguage { eEnglish, eGerman };

/// Numbers as people write them, and where they are. Results are kept for the numbers that were asked for
/// last.
///
/// Thread-safe.
class NumberTexts {
public:
    /// `region` is the country of the line, as two capital letters. `digits` is borrowed and outlives the
    /// object.
    NumberTexts(std::string region, DigitAnalysisServiceIfc& digits);

    /// Returns a number of the numbering plan in the format of its country: without the country code in the
    /// line's own country ("030 123456"), with it in others ("+44 20 7946 0123"). Returns any other text as
    /// it is: extensions, codes, addresses.
    [[nodiscard]] std::string text(const std::string& number);

    /// Returns the city or district of a number, of another country with that country ("London, United
    /// Kingdom"). std::nullopt if it is not known, and for mobile numbers of the own country. The first call
    /// of a process loads tables, which takes some milliseconds.
    [[nodiscard]] std::optional<std::string> place(const std::string& number, PlaceLanguage language);

private:
    /// "+4930123456" of a number of the numbering plan; empty for another text.
    [[nodiscard]] std::string international(const std::string& number);

    // Constant after construction.
    const std::string m_region;
    const NumberingPlan m_plan;
    DigitAnalysisServiceIfc& m_digits;

    // Thread-safe. Never outdated, since the rules are constant.
    NumberForms m_texts;
    std::array<NumberForms, 2> m_places;  // by language; empty for those that are not known
};

}  // namespace host
