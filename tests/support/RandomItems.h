#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include <rapidcheck.h>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/Occurrences.h"

/// Items whose every field is filled: with random values for properties, or with counted values, which show
/// mixed-up fields. Each setter is named here, independently of the tables of the library.
namespace journaltest {

/// Texts that have broken something somewhere, mixed with any bytes.
inline std::string someText() {
    const auto nasty = rc::gen::element<std::string>(
        "", " ", " leading", "trailing ", "\r\n", "\t\n \r", "a\rb\nc", "]]>", "<![CDATA[", "<!--x-->",
        "&#0;", "&amp;", "<a b='c'>\"</a>", "\xEE\xB9\x81", "\xEE\x80\x80", "\xEE\xB8\x80", "\xEE\xBB\xBF",
        "\xEF\xBF\xBE", "\xEF\xBB\xBF", "\xED\xA0\x80", "\xC0\x80", "\xFF\xFE", "\xF4\x90\x80\x80",
        "\xF0\x9F\x98\x80", "failure", "failed", "Müller", "\x01\x1f\x7f");
    if (*rc::gen::arbitrary<bool>()) {
        return *rc::gen::container<std::string>(rc::gen::arbitrary<char>());
    }
    return *nasty + *nasty;
}

inline std::int32_t someNumber() {
    return *rc::gen::oneOf(rc::gen::arbitrary<std::int32_t>(), rc::gen::element(INT32_MIN, INT32_MAX, 0, -1));
}

struct RandomValues {
    static std::string text() { return someText(); }
    static std::int32_t number() { return someNumber(); }
    static bool flag() { return *rc::gen::arbitrary<bool>(); }
    static int upTo(int most) { return *rc::gen::inRange(0, most + 1); }
};

/// "t1", "t2", 3, "t4": in the order of the calls below.
struct CountedValues {
    std::string text() { return "t" + std::to_string(++last); }
    std::int32_t number() { return ++last; }
    static bool flag() { return true; }
    static int upTo(int /*most*/) { return 1; }

    std::int32_t last = 0;
};

template <typename Field, typename Values>
Field next(Values& values) {
    if constexpr (std::is_same_v<Field, std::string>) {
        return values.text();
    } else if constexpr (std::is_same_v<Field, bool>) {
        return values.flag();
    } else {
        return static_cast<Field>(values.number());
    }
}

/// Gives each field of `object` the next value of its type.
template <typename Values, typename Object, typename... Classes, typename... Fields>
void set(Values& values, Object& object, void (Classes::*... setters)(Fields)) {
    (..., (object.*setters)(next<std::decay_t<Fields>>(values)));
}

template <typename Values, typename Info>
void fillOccurrence(Values& values, Info& info) {
    set(values, info, &CallInfo::setCallId, &CallInfo::setNumber, &CallInfo::setConnectedNumber,
        &CallInfo::setTextC, &CallInfo::setTextD, &CallInfo::setTimeAndDate, &CallInfo::setLogTarget,
        &CallInfo::setPresentationA, &CallInfo::setPresentationB, &CallInfo::setPresentationC,
        &CallInfo::setPresentationD, &Redirecting::setRedirectingNumber, &Redirecting::setRedirectingName,
        &Redirecting::setRedirectingNumberPresentation, &Redirecting::setRedirectingNamePresentation,
        &Redirecting::setTransferNumberType, &Redirecting::setRedirectingReason);
    if constexpr (std::is_same_v<Info, MissedCallItem::MissedCallInfo>) {
        set(values, info, &Info::setGroupText, &Info::setLineKey, &Info::setTimeFormat,
            &Info::setCompletedElsewhere);
    } else if constexpr (std::is_same_v<Info, DialledCallItem::DialledCallInfo>) {
        set(values, info, &Info::setDuration, &Info::setSubstituteNumber, &Info::setTimeFormat,
            &Info::setFeatureAccessCode);
    } else if constexpr (std::is_same_v<Info, ReceivedCallItem::ReceivedCallInfo>) {
        set(values, info, &Info::setDuration, &Info::setTimeFormat);
    } else {
        set(values, info, &Info::setDuration, &Info::setForwardedToNumber, &Info::setForwardingTarget,
            &Info::setForwardingReason);
    }
}

/// An item of a call list.
template <typename Values, typename Item>
void fill(Values& values, Item& item) {
    set(values, item, &Item::setEntryId, &Item::setFirstname, &Item::setSurname, &Item::setUniqueId,
        &Item::setPictureClip);
    auto occurrences = occurrencesOf(item);
    for (int count = values.upTo(3); count > 0; --count) {
        fillOccurrence(values, occurrences.emplace_back());
    }
    setOccurrences(item, occurrences);
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        set(values, item, &Item::setViewed);
    } else if constexpr (std::is_same_v<Item, DialledCallItem>) {
        set(values, item, &Item::setJournalSeviceGroupBy);
    }
}

template <typename Values>
void fill(Values& values, CallBackItem& item) {
    using Item = CallBackItem;
    set(values, item, &Item::setEntryId, &Item::setFirstname, &Item::setSurname, &Item::setNumber,
        &Item::setTimeDate, &Item::setDeviceId, &Item::setNumberType, &Item::setCallBackType,
        &Item::setCallBackState);
}

template <typename Values>
void fill(Values& values, Contact& contact) {
    set(values, contact, &Contact::setUniqueId, &Contact::setSurname, &Contact::setFirstname,
        &Contact::setOffice, &Contact::setMobile, &Contact::setPrivate, &Contact::setEmail,
        &Contact::setGroup, &Contact::setCompany, &Contact::setOffice2, &Contact::setAddress,
        &Contact::setAddress2, &Contact::setJobFunction, &Contact::setPicture, &Contact::setVoiceDial,
        &Contact::setExternalId, &Contact::setSearchNumber, &Contact::setDefaultNumber,
        &Contact::setMatchedKindCode);
    contact.setContactSource(static_cast<Contact::eOrderedContactSource>(values.upTo(5)));
    for (int count = values.upTo(2); count > 0; --count) {
        contact.addCallRecord({values.text(), values.text()});
    }
}

template <typename Item, typename Values = RandomValues>
Item some() {
    Values values;
    Item item;
    fill(values, item);
    return item;
}

template <typename Item>
Item counted() {
    return some<Item, CountedValues>();
}

}  // namespace journaltest
