#include "src/JournalServiceEvents/handlers/CallBackEvents.h"

#include <algorithm>
#include <boost/bind/bind.hpp>
#include <iterator>
#include <sstream>
#include <string>

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/csta/CSTAPrivateEvents.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/ListTransaction.h"
#include "src/JournalServiceEvents/entries/ContactMatching.h"
#include "src/JournalServiceEvents/entries/PartyNames.h"

namespace journal {

namespace {

using Type = CallBackItem::CallBackType;
using State = CallBackItem::CallBackState;
namespace texts = communicationsServiceTexts;

/// The progress that the words of a CallBack event's private data name; an unknown word is ignored.
struct Progress {
    Type type = Type::eOnRequest;
    State state = State::eRequested;

    explicit Progress(const std::string& privateData) {
        std::istringstream words(privateData);
        for (std::string word; words >> word;) {
            if (word == texts::content_callback_onBusy) {
                type = Type::eOnBusy;
            } else if (word == texts::content_callback_onNoReply) {
                type = Type::eOnNoReply;
            } else if (word == texts::content_callback_ringing) {
                state = State::eRinging;
            } else if (word == texts::content_callback_done) {
                state = State::eDone;
            }
        }
    }
};

/// The type of the contact's number that the directory has matched.
NumberType::NT numberTypeOf(const Contact& contact) {
    switch (contact.getMatchedKind()) {
        case Contact::MatchedKind::eOffice2: return NumberType::NT::eOffice2;
        case Contact::MatchedKind::eOffice: return NumberType::NT::eOffice;
        case Contact::MatchedKind::eMobile: return NumberType::NT::eMobile;
        case Contact::MatchedKind::ePrivate: return NumberType::NT::ePrivate;
        case Contact::MatchedKind::eNone: break;
    }
    return NumberType::NT::eUnknown;
}

auto matcher(const Contact& contact) {
    return boost::bind(&contactMatchesCallBack, boost::placeholders::_1, boost::cref(contact));
}

}  // namespace

void CallBackEvents::handleCSTACallBackEvent(CSTACallBackEvent* event) {
    constexpr const char* kLogName = "handleCSTACallBackEvent";
    LOG_EVENTS(6, "handleCSTACallBackEvent[%s]", event->toString().c_str());
    if (!m_callControl.acceptsEvents()) {
        return;
    }
    const bool byThePhone = !event->getTargetDevice().isLocal();
    const CSTADevice party = byThePhone ? event->getTargetDevice() : farEnd(event->getOriginatingDevice());
    if (party.number.empty()) {
        LOG_EVENTS(5, "%s():No Number Provided - no entry in callback list", kLogName);
        return;
    }
    const Progress progress(event->getPrivateData());
    const Contact contact = m_names.contactOf(party.number, party.name);
    LOG_EVENTS(5, "%s():Number: %s, Name: %s, set: %d", kLogName, party.number.c_str(),
               contact.getSurname().c_str(), event->isSet() ? 1 : 0);
    ListTransaction transaction(m_lists);
    if (!event->isSet() || progress.state == State::eDone) {
        remove(transaction, contact);
    } else {
        set(transaction,
            CallBackItem({}, contact.getFirstname(), contact.getSurname(), party.number,
                         numberTypeOf(contact), m_clock.getCallBackTime(), progress.type, progress.state,
                         CSTADevice::kLocalDevice),
            contact);
    }
}

void CallBackEvents::set(ListTransaction& transaction, CallBackItem item, const Contact& contact) const {
    const std::string newEntryId = transaction.makeUniqueEntryId(m_clock.createEntryId(item.getNumber()));
    auto& items = transaction.openLoaded<CallBackItem>();
    const auto known = std::find_if(items.begin(), items.end(), matcher(contact));
    const bool changed = known != items.end();
    if (changed) {
        item.setEntryId(known->getEntryId());
        if (item.getSurname().empty() && item.getFirstname().empty()) {
            item.setSurname(known->getSurname());
            item.setFirstname(known->getFirstname());
        }
        items.erase(known);
    } else {
        item.setEntryId(newEntryId);
    }
    items.push_front(item);
    transaction.write(items.front());
    while (items.size() > kMaxItems) {
        transaction.remove(items, std::prev(items.end()));
    }
    transaction.commit([&](ObserverNotifierIfc& notifier) {
        if (changed) {
            notifier.updateCallbacks(item, item.getEntryId(), JournalServiceObserverIfc::eItemUpdated);
        } else {
            notifier.updateCallbacks(item, {}, JournalServiceObserverIfc::eItemAdded);
            notifier.updateCallbackCount();
        }
    });
}

void CallBackEvents::remove(ListTransaction& transaction, const Contact& contact) {
    auto& items = transaction.openLoaded<CallBackItem>();
    const auto known = std::find_if(items.begin(), items.end(), matcher(contact));
    if (known == items.end()) {
        return;
    }
    const std::string entryId = known->getEntryId();
    transaction.remove(items, known);
    transaction.commit(
        [&entryId](ObserverNotifierIfc& notifier) { notifier.updateCallbacksAndCount(entryId); });
}

}  // namespace journal
