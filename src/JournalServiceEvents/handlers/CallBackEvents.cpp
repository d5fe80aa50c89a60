#include "src/JournalServiceEvents/handlers/CallBackEvents.h"

#include <algorithm>
#include <boost/bind/bind.hpp>
#include <sstream>
#include <utility>
#include <vector>

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/csta/CSTAPrivateEvents.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalServiceEvents/entries/ContactMatching.h"
#include "src/JournalServiceEvents/entries/OccurrenceFiling.h"

namespace journal {

namespace {

using Type = CallBackItem::CallBackType;
using State = CallBackItem::CallBackState;
namespace texts = communicationsServiceTexts;

/// What the words of a CallBack event's private data say; a word that is not known says nothing.
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

/// Which of the contact's numbers the directory has matched.
NumberType::NT numberTypeOf(const Contact& contact) {
    switch (contact.getMatchedNumber()) {
        case Contact::MatchedNumber::eOffice2: return NumberType::NT::eOffice2;
        case Contact::MatchedNumber::eOffice: return NumberType::NT::eOffice;
        case Contact::MatchedNumber::eMobile: return NumberType::NT::eMobile;
        case Contact::MatchedNumber::ePrivate: return NumberType::NT::ePrivate;
        case Contact::MatchedNumber::eNone: break;
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
    if (!m_parts.callControl.acceptsEvents()) {
        return;
    }
    const bool byThePhone = !event->getTargetDevice().isLocal();
    const CSTADevice party = byThePhone ? event->getTargetDevice() : farEnd(event->getOriginatingDevice());
    if (party.number.empty()) {
        LOG_EVENTS(5, "%s():No Number Provided - no entry in callback list", kLogName);
        return;
    }
    const Progress progress(event->getPrivateData());
    const Contact contact = m_parts.names.contactOf(party.number, party.name, party.name);
    LOG_EVENTS(5, "%s():Number: %s, Name: %s, set: %d", kLogName, party.number.c_str(),
               contact.getSurname().c_str(), event->isSet() ? 1 : 0);
    const JournalLists::Change change(m_parts.lists);
    if (m_parts.loadAtFirstNeed) {
        m_parts.loadAtFirstNeed();
    }
    if (!event->isSet() || progress.state == State::eDone) {
        remove(contact);
    } else {
        set(CallBackItem({}, contact.getFirstname(), contact.getSurname(), party.number,
                         numberTypeOf(contact), m_parts.clock.getCallBackTime(), progress.type,
                         progress.state, CSTADevice::kLocalDevice),
            contact);
    }
}

void CallBackEvents::set(const CallBackItem& news, const Contact& contact) {
    CallBackItem item = news;
    bool changed = false;
    {
        const auto items = m_parts.lists.list<CallBackItem>().access();
        const auto known = std::find_if(items->begin(), items->end(), matcher(contact));
        changed = known != items->end();
        if (changed) {
            item.setEntryId(known->getEntryId());
            if (item.getSurname().empty() && item.getFirstname().empty()) {
                item.setSurname(known->getSurname());
                item.setFirstname(known->getFirstname());
            }
            items->erase(known);
        } else {
            item.setEntryId(freeEntryId(*items, {}, m_parts.clock.createEntryId(item.getNumber())));
        }
        items->push_front(item);
        m_parts.persistence.update(items->front(), CallListDatabaseAdapterHelper::WRITEREQUEST);
        while (items->size() > kMaxItems) {
            m_parts.persistence.update(items->back(), CallListDatabaseAdapterHelper::DELETEREQUEST);
            items->pop_back();
        }
    }
    if (changed) {
        m_parts.notifier.updateCallbacks(item, item.getEntryId(), JournalServiceObserverIfc::eItemUpdated);
    } else {
        m_parts.notifier.updateCallbacks(item, {}, JournalServiceObserverIfc::eItemAdded);
        m_parts.notifier.updateCallbackCount();
    }
}

void CallBackEvents::remove(const Contact& contact) {
    std::string entryId;
    {
        const auto items = m_parts.lists.list<CallBackItem>().access();
        const auto known = std::find_if(items->begin(), items->end(), matcher(contact));
        if (known == items->end()) {
            return;
        }
        entryId = known->getEntryId();
        m_parts.persistence.update(*known, CallListDatabaseAdapterHelper::DELETEREQUEST);
        items->erase(known);
    }
    m_parts.notifier.updateCallbacksAndCount(entryId);
}

}  // namespace journal
