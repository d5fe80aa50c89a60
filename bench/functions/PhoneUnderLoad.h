#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "bench/calls/CallPlan.h"
#include "host/calls/PhoneCallEvents.h"
#include "tests/support/SimulatedPhone.h"

namespace bench {

/// The whole service between faked platform services. Its database stores no row and confirms each change, so
/// that the time of a call is that of the service alone.
class PhoneUnderLoad {
public:
    /// Fills the list of received calls with calls of so many parties.
    explicit PhoneUnderLoad(std::size_t parties);

    /// Reads the events of the calls of a plan as the link does.
    [[nodiscard]] static std::vector<host::PhoneEvent> eventsOf(const CallPlan& plan, std::size_t calls);

    /// Delivers the events. Time passes before, so that the calls are none that were filed already.
    void deliver(const std::vector<host::PhoneEvent>& events);

    [[nodiscard]] journaltest::SimulatedPhone& phone() noexcept { return m_phone; }

private:
    [[nodiscard]] std::string respond(const std::string& request);

    journaltest::SimulatedPhone m_phone;
    unsigned long m_lastId = 0;
};

}  // namespace bench
