#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/services/HardwareVariant.h"
#include "tests/src/JournalServiceEvents/calls/Line.h"
#include "tests/support/Table.h"

namespace journaltest {

/// Plays each row's script on phones of these types: name | script | outcome | outcome on a SIP phone, "=" for the same.
inline void expectOutcomes(const std::string& text, const std::vector<const char*>& types = {
                                                        softwareTypes::qorvex, softwareTypes::sip}) {
    for (const auto& row : table(4, text)) {
        for (const char* const type : types) {
            SCOPED_TRACE(row[0] + " on '" + type + "': " + row[1]);
            host::HardwareVariant::set(0);
            Line line(type);
            line.plays(row[1]);
            const bool sip = line.parts.settings.values()->isSip();
            EXPECT_EQ(line.outcome(), sip && row[3] != "=" ? row[3] : row[2]);
        }
    }
}

}  // namespace journaltest
