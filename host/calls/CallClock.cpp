#include "host/calls/CallClock.h"

#include <ctime>

namespace host {

namespace {

/// A larger difference is no correction of the clock, but a new setting of it.
constexpr std::chrono::seconds kCorrection{2};

}  // namespace

Moment Moment::now() {
    std::timespec time{};
    static_cast<void>(::clock_gettime(CLOCK_BOOTTIME, &time));  // goes on while the machine sleeps
    return {std::chrono::system_clock::now(),
            std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec)};
}

PhoneCall::Time timeIn(const PhoneCall& call, const Moment& moment) {
    if (!call.clockOffset || std::chrono::abs(moment.offset() - *call.clockOffset) <= kCorrection) {
        return moment.system;
    }
    return PhoneCall::Time(
        std::chrono::duration_cast<PhoneCall::Time::duration>(moment.sinceBoot + *call.clockOffset));
}

}  // namespace host
