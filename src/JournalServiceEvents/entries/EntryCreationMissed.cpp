#include <algorithm>
#include <boost/bind/bind.hpp>

#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/entries/ContactMatching.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"
#include "src/JournalServiceEvents/entries/ForwardedMissedRule.h"
#include "src/JournalServiceEvents/entries/OccurrenceFiling.h"

namespace journal {

namespace {

constexpr const char* kLogName = "newMissedCallEntry";

struct MissedPolicy {
    using Item = MissedCallItem;
    using Info = MissedCallItem::MissedCallInfo;
    static constexpr bool kLimitsItems = true;

    const PhoneSettings& settings;
    ForwardedMissedRule& forwardedMissed;
    const MissedEntryDetails& details;

    auto matcher(const Contact& contact) const {
        return boost::bind(&contactMatchesMissedCall, boost::placeholders::_1, boost::cref(contact),
                           boost::cref(details.lineKey));
    }

    static bool isDuplicate(const Item& item, const Info& info) {
        const Info& newest = item.getMissedCallInfoList().front();
        const bool duplicate = newest.getNumber() == info.getNumber() &&
                               newest.getTimeAndDate() == info.getTimeAndDate() &&
                               newest.getPresentationC() == info.getPresentationC();
        if (duplicate) {
            LOG_EVENTS(5, "%s():newMissedCallEntry: Entry already exists, ignore", kLogName);
        }
        return duplicate;
    }

    void onMerge(Item& item) const {
        if (settings.values()->isSip()) {
            forwardedMissed.keepViewedBeforeMerge(item.getViewed());
        } else {
            LOG_EVENTS(5, "%s():Missed call: {%s} ITEMUPDATED targetLog[%d]", kLogName,
                       details.callId.c_str(), static_cast<int>(details.logTarget));
        }
        item.setViewed(false);
    }

    void onNew(Item& item) const {
        if (!settings.values()->isSip()) {
            LOG_EVENTS(5, "%s():Missed call: {%s} ITEMADDED targetLog[%d]", kLogName, details.callId.c_str(),
                       static_cast<int>(details.logTarget));
        }
        item.setViewed(false);
    }

    static void reportOverflow(const CallLogRequests& requests, const Info& oldest) {
        requests.sendMissedCallLogEntryRequest(&oldest);
    }
    static void reportDropped(const CallLogRequests& requests, const Item& item) {
        requests.sendMissedCallLogEntryRequests(item.getMissedCallInfoList());
    }

    static void announce(ObserverNotifierIfc& notifier, const FiledOccurrence<Item>& filed) {
        notifier.updateMissedCallCountAndCalls(filed.item, filed.unviewed, filed.mergedUniqueId,
                                               filed.action);
    }
};

}  // namespace

bool EntryCreation::newMissedCallEntry(const MissedEntryDetails& details) {
    const Contact contact = m_names.contactOf(details.remoteParty, details.remotePartyName);
    LOG_EVENTS(5,
               "%s():Missed call: {%s} Remote Party: %s, Remote Party Name: %s, Surname: %s, Firstname: %s, "
               "completed elsewhere: %d, sRedirectingNumber: %s, sRedirectingName: %s",
               kLogName, details.callId.c_str(), details.remoteParty.c_str(), details.remotePartyName.c_str(),
               contact.getSurname().c_str(), contact.getFirstname().c_str(),
               details.completedElsewhere ? 1 : 0, details.redirectingParty.c_str(),
               details.redirectingPartyName.c_str());
    if (details.completedElsewhere && !m_settings.values()->m_missedLogging) {
        LOG_EVENTS(
            5,
            "%s():The call was completed elsewhere, not remotely answered calls are just logged - this call "
            "will not be logged",
            kLogName);
        return false;
    }
    ListTransaction transaction(m_lists);
    if (!m_forwardedMissed.sscfw_canAddMissedCall(contact)) {
        LOG_EVENTS(5,
                   "%s():New missed entry relates to previous forwarded entry. No new entry has been added",
                   kLogName);
        return false;
    }
    MissedCallItem::MissedCallInfo info;
    populateCallInfo(info, details, m_clock);
    populateRedirecting(info, details);
    info.setTimeFormat(details.timeFormat);
    info.setCompletedElsewhere(details.completedElsewhere);
    info.setLineKey(details.lineKey);
    info.setGroupText(details.groupText);
    OccurrenceFiling filing(transaction, m_settings, m_clock, m_names,
                            MissedPolicy{m_settings, m_forwardedMissed, details});
    return filing.file(contact, info, details.callId);
}

void EntryCreation::deleteMissedEntryOf(const std::string& calledParty, const std::string& calledPartyName) {
    Contact contact;
    contact.setSearchNumber(calledParty);
    if (!m_names.contactIsInPhonebook(contact)) {
        contact.setSurname(calledPartyName);
    }
    const auto isOfParty = [&contact](const MissedCallItem& item) {
        const auto& infos = item.getMissedCallInfoList();
        return !infos.empty() && contactMatchesMissedCall(item, contact, infos.front().getLineKey());
    };
    ListTransaction transaction(m_lists);
    auto& missed = transaction.openLoaded<MissedCallItem>(isOfParty);
    const auto found = std::find_if(missed.begin(), missed.end(), isOfParty);
    if (found == missed.end()) {
        return;
    }
    LOG_EVENTS(5, "%s():Found entry for '%s' - remove it from missed calls list",
               "findAndDeleteMissedEntryWhenCalled", calledParty.c_str());
    transaction.remove(missed, found);
    const unsigned unviewed = JournalLists::getUnviewedMissedCallsCount(missed);
    transaction.commit(
        [unviewed](ObserverNotifierIfc& notifier) { notifier.updateMissedCallCountAndCalls(unviewed); });
}

}  // namespace journal
