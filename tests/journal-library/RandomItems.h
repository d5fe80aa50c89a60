#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <rapidcheck.h>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/Occurrences.h"

/// Items whose every field holds anything, for properties. Each setter is called by hand: what the
/// library's own tables forget, these do not.
namespace journaltest {

/// Texts that have broken something somewhere, mixed with any bytes.
inline std::string someText() {
    static const std::vector<std::string> kNasty = {"",
                                                    " ",
                                                    " leading",
                                                    "trailing ",
                                                    "\r\n",
                                                    "\t\n \r",
                                                    "a\rb\nc",
                                                    "]]>",
                                                    "<![CDATA[",
                                                    "<!--x-->",
                                                    "&#0;",
                                                    "&amp;",
                                                    "<a b='c'>\"</a>",
                                                    "\xEE\xB9\x81",
                                                    "\xEE\x80\x80",
                                                    "\xEE\xB8\x80",
                                                    "\xEE\xBB\xBF",
                                                    "\xEF\xBF\xBE",
                                                    "\xEF\xBB\xBF",
                                                    "\xED\xA0\x80",
                                                    "\xC0\x80",
                                                    "\xFF\xFE",
                                                    "\xF4\x90\x80\x80",
                                                    "\xF0\x9F\x98\x80",
                                                    "failure",
                                                    "failed",
                                                    "Müller",
                                                    "\x01\x1f\x7f"};
    const auto anyBytes = rc::gen::map(
        rc::gen::container<std::vector<std::uint8_t>>(rc::gen::arbitrary<std::uint8_t>()),
        [](const std::vector<std::uint8_t>& bytes) { return std::string(bytes.begin(), bytes.end()); });
    if (*rc::gen::arbitrary<bool>()) {
        return *anyBytes;
    }
    return *rc::gen::elementOf(kNasty) + *rc::gen::elementOf(kNasty);
}

inline std::int32_t someNumber() {
    return *rc::gen::oneOf(rc::gen::arbitrary<std::int32_t>(), rc::gen::element(INT32_MIN, INT32_MAX, 0, -1));
}

inline bool someFlag() {
    return *rc::gen::arbitrary<bool>();
}

inline void fill(CallInfo& info) {
    info.setCallId(someText());
    info.setNumber(someText());
    info.setConnectedNumber(someText());
    info.setTextC(someText());
    info.setTextD(someText());
    info.setTimeAndDate(someText());
    info.setLogTarget(someNumber());
    info.setPresentationA(someNumber());
    info.setPresentationB(someNumber());
    info.setPresentationC(someNumber());
    info.setPresentationD(someNumber());
}

inline void fill(Redirecting& info) {
    info.setRedirectingNumber(someText());
    info.setRedirectingName(someText());
    info.setRedirectingNumberPresentation(someNumber());
    info.setRedirectingNamePresentation(someNumber());
    info.setTransferNumberType(someNumber());
    info.setRedirectingReason(someNumber());
}

inline void fill(MissedCallItem::MissedCallInfo& info) {
    fill(static_cast<CallInfo&>(info));
    fill(static_cast<Redirecting&>(info));
    info.setTimeFormat(someNumber());
    info.setCompletedElsewhere(someFlag());
    info.setGroupText(someText());
    info.setLineKey(someText());
}

inline void fill(DialledCallItem::DialledCallInfo& info) {
    fill(static_cast<CallInfo&>(info));
    fill(static_cast<Redirecting&>(info));
    info.setDuration(someText());
    info.setTimeFormat(someNumber());
    info.setSubstituteNumber(someText());
    info.setFeatureAccessCode(someFlag());
}

inline void fill(ReceivedCallItem::ReceivedCallInfo& info) {
    fill(static_cast<CallInfo&>(info));
    fill(static_cast<Redirecting&>(info));
    info.setDuration(someText());
    info.setTimeFormat(someNumber());
}

inline void fill(ForwardedCallItem::ForwardedCallInfo& info) {
    fill(static_cast<CallInfo&>(info));
    fill(static_cast<Redirecting&>(info));
    info.setDuration(someText());
    info.setForwardedToNumber(someText());
    info.setForwardingTarget(someNumber());
    info.setForwardingReason(someNumber());
}

inline void fillOwnFields(MissedCallItem& item) {
    item.setViewed(someFlag());
}
inline void fillOwnFields(DialledCallItem& item) {
    item.setJournalSeviceGroupBy(someText());
}
inline void fillOwnFields(ReceivedCallItem&) {}
inline void fillOwnFields(ForwardedCallItem&) {}

template <typename Item>
Item some() {
    Item item;
    item.setEntryId(someText());
    item.setFirstname(someText());
    item.setSurname(someText());
    item.setUniqueId(someText());
    item.setPictureClip(someText());
    fillOwnFields(item);
    auto occurrences = occurrencesOf(item);
    for (int count = *rc::gen::inRange(0, 4); count > 0; --count) {
        fill(occurrences.emplace_back());
    }
    setOccurrences(item, occurrences);
    return item;
}

template <>
inline CallBackItem some<CallBackItem>() {
    CallBackItem item;
    item.setEntryId(someText());
    item.setFirstname(someText());
    item.setSurname(someText());
    item.setNumber(someText());
    item.setNumberType(static_cast<NumberType::NT>(someNumber()));
    item.setTimeDate(someText());
    item.setCallBackType(static_cast<CallBackItem::CallBackType>(someNumber()));
    item.setCallBackState(static_cast<CallBackItem::CallBackState>(someNumber()));
    item.setDeviceId(someText());
    return item;
}

template <>
inline Contact some<Contact>() {
    Contact contact;
    for (auto set :
         {&Contact::setUniqueId, &Contact::setSurname, &Contact::setFirstname, &Contact::setSearchNumber,
          &Contact::setOffice, &Contact::setMobile, &Contact::setPrivate, &Contact::setOffice2,
          &Contact::setEmail, &Contact::setGroup, &Contact::setCompany, &Contact::setAddress,
          &Contact::setAddress2, &Contact::setJobFunction, &Contact::setPicture, &Contact::setVoiceDial,
          &Contact::setExternalId}) {
        (contact.*set)(someText());
    }
    contact.setMatchedKind(someNumber());
    contact.setDefaultNumber(someNumber());
    contact.setContactSource(static_cast<Contact::eOrderedContactSource>(*rc::gen::inRange(0, 6)));
    for (int count = *rc::gen::inRange(0, 3); count > 0; --count) {
        contact.addCallRecord({someText(), someText()});
    }
    return contact;
}

}  // namespace journaltest
