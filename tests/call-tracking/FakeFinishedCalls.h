#pragma once

#include <string>
#include <vector>

#include "src/JournalServiceEvents/CallMap.h"
#include "src/JournalServiceEvents/FinishedCallsIfc.h"

namespace journaltest {

/// Notes what the state machine hands over, and removes the record as the real part does.
class FakeFinishedCalls final : public journal::FinishedCallsIfc {
public:
    explicit FakeFinishedCalls(journal::CallMap& calls) : m_calls(calls) {}

    bool createCallEntryAndRemoveCall(const journal::Call* call, journal::Call::states_t state) override {
        filed.push_back("{" + call->m_sCallId + "} " + std::to_string(state));
        endTimes.push_back(call->m_endTimeSec);
        if (!keepsRecords) {
            m_calls.removeCall(call->m_sCallId);
        }
        return answer;
    }

    void findAndDeleteMissedEntryWhenCalled(journal::Call* call) override {
        settled.push_back(call->m_sCallId);
    }

    bool answer = true;
    bool keepsRecords = false;
    /// "{call id} state", in the order of filing.
    std::vector<std::string> filed;
    std::vector<long> endTimes;
    std::vector<std::string> settled;

private:
    journal::CallMap& m_calls;
};

}  // namespace journaltest
