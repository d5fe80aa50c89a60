#include "host/data/CallFiling.h"

#include <algorithm>
#include <variant>

#include "host/data/LiveCallRows.h"
#include "journal-items/Occurrences.h"

namespace host {
namespace {

using std::chrono::sys_seconds;

template <typename Item>
const CallInfo* newestCall(const Item& item) {
    const auto& occurrences = occurrencesOf(item);
    return occurrences.empty() ? nullptr : &occurrences.front();
}
const CallInfo* newestCall(const CallBackItem& /*item*/) {
    return nullptr;
}

std::optional<sys_seconds> inSeconds(const std::optional<PhoneCall::Time>& time) {
    return time ? std::optional(std::chrono::floor<std::chrono::seconds>(*time)) : std::nullopt;
}

CallFacts factsOf(const NotedCall& noted) {
    const PhoneCall& call = noted.call;
    CallFacts facts{.established = inSeconds(call.established),
                    .ended = inSeconds(noted.ended),
                    .endApproximate = noted.endApproximate,
                    .reason = call.reason};
    if (call.established && !call.partner.isLocal()) {
        facts.connectedNumber = call.partner.number;
        facts.connectedName = call.partner.name;
    }
    return facts;
}

/// The call that the event being delivered ends and the journal knows by that id, or null.
DeliveryContext::EndedCall* endedCall(DeliveryContext& delivery, const std::string& callId) {
    const auto found = std::find_if(delivery.ends.begin(), delivery.ends.end(), [&](const auto& each) {
        return callId == (each.deliveredId.empty() ? each.call.callId : each.deliveredId);
    });
    return found != delivery.ends.end() ? &*found : nullptr;
}

}  // namespace

const CallInfo* CallFiling::newestOf(const journalxml::DataRequest::Item& item) {
    return std::visit([](const auto& one) { return newestCall(one); }, item);
}

CallFiling::CallFiling(const journalxml::DataRequest& request, LiveCallStoreIfc* calls) : m_calls(calls) {
    if (request.reason != journalxml::DataRequest::Reason::eWrite) {
        return;
    }
    DeliveryContext* const delivery = DeliveryContext::current();
    for (const journalxml::DataRequest::Item& item : request.items) {
        Filed filed{.newest = newestOf(item)};
        if (filed.newest == nullptr) {
            continue;
        }
        const std::string& callId = filed.newest->getCallId();
        if (delivery != nullptr) {
            filed.ended = endedCall(*delivery, callId);
        }
        if (filed.ended != nullptr) {
            filed.call = filed.ended->call;
        }
        std::optional<NotedCall> noted;
        if (calls != nullptr) {
            noted = filed.call ? calls->ended(*filed.call) : calls->ended(callId);
        }
        if (noted) {
            filed.facts = host::factsOf(*noted);
            filed.call = keyOf(noted->call);
        }
        if (filed.ended != nullptr && delivery->endApproximate) {
            filed.facts = filed.facts.value_or(CallFacts());
            filed.facts->endApproximate = true;
        }
        m_filed.push_back(std::move(filed));
    }
}

const CallFacts* CallFiling::factsOf(const CallInfo* newest) const {
    const auto found = std::find_if(m_filed.begin(), m_filed.end(),
                                    [newest](const Filed& each) { return each.newest == newest; });
    return found != m_filed.end() && found->facts ? &*found->facts : nullptr;
}

void CallFiling::addEvents(Database::Session& session) {
    if (m_calls != nullptr && !m_filed.empty()) {
        m_lastEvent = m_calls->addEvents(session);
    }
}

void CallFiling::removeLiveCalls(Database::Session& session, const std::string& line) const {
    LiveCallRows rows(session, line);
    for (const Filed& each : m_filed) {
        if (each.ended == nullptr) {
            // It is filed later, when no event that ends it is being delivered.
            rows.removeEnded(each.newest->getCallId());
        }
        if (each.call) {
            if (m_calls != nullptr) {
                m_calls->setFiled(*each.call, true);
            }
            rows.remove(*each.call);
        }
    }
}

std::size_t CallFiling::callCount() const noexcept {
    return static_cast<std::size_t>(std::count_if(m_filed.begin(), m_filed.end(),
                                                  [](const Filed& each) { return each.call.has_value(); }));
}

void CallFiling::keep() {
    for (Filed& each : m_filed) {
        if (each.call && m_calls != nullptr) {
            m_calls->setFiled(*each.call, true);
        }
        if (each.ended != nullptr) {
            each.ended->filed = true;
            each.ended = nullptr;
        }
    }
}

void CallFiling::setFiled(bool filed) const {
    if (filed && m_lastEvent > 0) {
        m_calls->eventsAdded(m_lastEvent);
    }
    for (const Filed& each : m_filed) {
        if (each.ended != nullptr && filed) {
            each.ended->filed = true;
        }
        if (each.call && m_calls != nullptr && !filed) {
            m_calls->setFiled(*each.call, false);
        }
    }
}

}  // namespace host
