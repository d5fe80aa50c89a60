#pragma once

#include <string>
#include <vector>

namespace calljournal {

/// The result of one check. A plain value.
struct Finding {
    enum class Level {
        eGood,
        eWarning,  ///< works, but should be changed
        eFailed,
    };

    Level level = Level::eGood;
    /// The subject in a word or two: "database".
    std::string subject;
    /// A sentence with what was found, and for a warning or a failure with what to do.
    std::string text;
};

using Findings = std::vector<Finding>;

}  // namespace calljournal
