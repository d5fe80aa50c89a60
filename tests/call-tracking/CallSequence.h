#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/call-tracking/Line.h"

namespace journaltest {

/// A whole call as the switch tells it, and what the journal of each flavour holds afterwards.
struct CallSequence {
    const char* name = "";
    std::function<void(Line&)> script;
    std::vector<std::string> qorvex;
    std::vector<std::string> sip;
};

/// Plays the call on each flavour, an unknown software type included, and expects its journal and no record left.
inline void expectJournals(const CallSequence& sequence) {
    for (const char* softwareType : {softwareTypes::qorvex, "", softwareTypes::sip}) {
        SCOPED_TRACE(std::string(sequence.name) + " on '" + softwareType + "'");
        Line line(softwareType);
        sequence.script(line);
        EXPECT_EQ(line.journal(), line.settings.values()->isSip() ? sequence.sip : sequence.qorvex);
        EXPECT_EQ(line.liveCalls(), 0U);
    }
}

}  // namespace journaltest
