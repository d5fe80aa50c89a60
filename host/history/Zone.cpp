#include "host/history/Zone.h"

#include <unicode/basictz.h>
#include <unicode/timezone.h>
#include <unicode/tztrans.h>
#include <unicode/unistr.h>

#include <cmath>
#include <cstdint>

namespace host {
namespace {

using std::chrono::local_seconds;
using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr const char* kUnknown = UCAL_UNKNOWN_ZONE_ID;

template <typename Time>
UDate dateOf(Time time) {
    return 1000.0 * static_cast<double>(time.time_since_epoch().count());
}

sys_seconds timeOf(UDate date) {
    return sys_seconds(seconds(static_cast<std::int64_t>(std::floor(date / 1000.0))));
}

}  // namespace

struct Zone::Rules {
    /// Takes ownership; not null. Zones that ICU makes from a name or for the machine are all of this class.
    explicit Rules(icu::TimeZone* made) : zone(dynamic_cast<icu::BasicTimeZone*>(made)) {
        icu::UnicodeString id;
        made->getID(id).toUTF8String(name);
    }
    [[nodiscard]] seconds ahead(sys_seconds time) const {
        std::int32_t raw = 0;
        std::int32_t saving = 0;
        UErrorCode error = U_ZERO_ERROR;
        zone->getOffset(dateOf(time), 0, raw, saving, error);
        return seconds((raw + saving) / 1000);
    }

    const std::unique_ptr<icu::BasicTimeZone> zone;
    std::string name;
};

std::optional<Zone> Zone::named(std::string_view name) {
    const auto id = icu::UnicodeString::fromUTF8({name.data(), static_cast<std::int32_t>(name.size())});
    auto rules = std::make_shared<const Rules>(icu::TimeZone::createTimeZone(id));
    // The result for an unknown name has the name kUnknown.
    return rules->name == name && name != kUnknown ? std::optional(Zone(std::move(rules))) : std::nullopt;
}

Zone Zone::ofMachine() {
    auto rules = std::make_shared<const Rules>(icu::TimeZone::detectHostTimeZone());
    if (rules->name == kUnknown) {
        rules = std::make_shared<const Rules>(icu::TimeZone::createTimeZone("UTC"));
    }
    return Zone(std::move(rules));
}

const std::string& Zone::name() const noexcept {
    return m_rules->name;
}

sys_seconds Zone::utcOf(local_seconds time) const {
    std::int32_t raw = 0;
    std::int32_t saving = 0;
    UErrorCode error = U_ZERO_ERROR;
    m_rules->zone->getOffsetFromLocal(dateOf(time), UCAL_TZ_LOCAL_FORMER, UCAL_TZ_LOCAL_FORMER, raw, saving,
                                      error);
    return sys_seconds(time.time_since_epoch() - seconds((raw + saving) / 1000));
}

local_seconds Zone::localOf(sys_seconds time) const {
    return local_seconds(time.time_since_epoch() + m_rules->ahead(time));
}

std::vector<Zone::Offset> Zone::offsets(sys_seconds from, sys_seconds until) const {
    std::vector<Offset> offsets{{from, m_rules->ahead(from)}};
    icu::TimeZoneTransition change;
    while (m_rules->zone->getNextTransition(dateOf(offsets.back().from), false, change) != 0 &&
           timeOf(change.getTime()) < until) {
        const sys_seconds time = timeOf(change.getTime());
        offsets.push_back({time, m_rules->ahead(time)});
    }
    return offsets;
}

}  // namespace host
