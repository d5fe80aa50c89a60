#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <type_traits>
#include <variant>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/ListTraits.h"
#include "journal-items/Occurrences.h"
#include "platform/journal-library/XmlNames.h"

/// The table of elements and fields that both the writer and the reader of items use.
///
/// Each class of an item or an occurrence lists its own fields; `forEachPart` visits the classes of an
/// object. Internal to this library.
namespace journalxml {

template <typename Class>
struct TextField {
    const char* name;
    const std::string& (Class::*get)() const;
    void (Class::*set)(const std::string&);
};

template <typename Class>
struct FlagField {
    const char* name;
    bool (Class::*get)() const;
    void (Class::*set)(bool);
};

/// A number, or an enumeration that is sent as one.
template <typename Class>
struct NumberField {
    const char* name;
    std::int32_t (*get)(const Class&);
    void (*set)(Class&, std::int32_t);
};

/// Makes a field from a getter and a setter: `number<CallInfo, &CallInfo::getLogTarget,
/// &CallInfo::setLogTarget>("LogTarget")`.
template <typename Class, auto Get, auto Set>
constexpr NumberField<Class> number(const char* name) {
    return {name, [](const Class& object) { return static_cast<std::int32_t>((object.*Get)()); },
            [](Class& object, std::int32_t value) {
                using Value = std::decay_t<decltype((object.*Get)())>;
                (object.*Set)(static_cast<Value>(value));
            }};
}

/// A class without an entry below has no fields of its own.
template <typename Class>
struct NoFields {
    static constexpr std::array<TextField<Class>, 0> kTexts{};
    static constexpr std::array<FlagField<Class>, 0> kFlags{};
    static constexpr std::array<NumberField<Class>, 0> kNumbers{};
};

template <typename Class>
struct Fields : NoFields<Class> {};

template <>
struct Fields<CallItem> : NoFields<CallItem> {
    static constexpr std::array<TextField<CallItem>, 3> kTexts{{
        {kEntryId, &CallItem::getEntryId, &CallItem::setEntryId},
        {"Firstname", &CallItem::getFirstname, &CallItem::setFirstname},
        {"Surname", &CallItem::getSurname, &CallItem::setSurname},
    }};
};

template <>
struct Fields<CallItemWithPicture> : NoFields<CallItemWithPicture> {
    static constexpr std::array<TextField<CallItemWithPicture>, 2> kTexts{{
        {kUniqueId, &CallItemWithPicture::getUniqueId, &CallItemWithPicture::setUniqueId},
        {"PictureClip", &CallItemWithPicture::getPictureClip, &CallItemWithPicture::setPictureClip},
    }};
};

template <>
struct Fields<MissedCallItem> : NoFields<MissedCallItem> {
    static constexpr std::array<FlagField<MissedCallItem>, 1> kFlags{{
        {"Viewed", &MissedCallItem::getViewed, &MissedCallItem::setViewed},
    }};
};

template <>
struct Fields<DialledCallItem> : NoFields<DialledCallItem> {
    static constexpr std::array<TextField<DialledCallItem>, 1> kTexts{{
        {"GroupBy", &DialledCallItem::getJournalSeviceGroupBy, &DialledCallItem::setJournalSeviceGroupBy},
    }};
};

template <>
struct Fields<CallBackItem> : NoFields<CallBackItem> {
    static constexpr std::array<TextField<CallBackItem>, 3> kTexts{{
        {"Number", &CallBackItem::getNumber, &CallBackItem::setNumber},
        {"TimeDate", &CallBackItem::getTimeDate, &CallBackItem::setTimeDate},
        {"DeviceId", &CallBackItem::getDeviceId, &CallBackItem::setDeviceId},
    }};
    static constexpr std::array<NumberField<CallBackItem>, 3> kNumbers{{
        number<CallBackItem, &CallBackItem::getNumberType, &CallBackItem::setNumberType>("NumberType"),
        number<CallBackItem, &CallBackItem::getCallBackType, &CallBackItem::setCallBackType>("CallBackType"),
        number<CallBackItem, &CallBackItem::getCallBackState, &CallBackItem::setCallBackState>(
            "CallBackState"),
    }};
};

template <>
struct Fields<CallInfo> : NoFields<CallInfo> {
    static constexpr std::array<TextField<CallInfo>, 6> kTexts{{
        {"CallId", &CallInfo::getCallId, &CallInfo::setCallId},
        {"Number", &CallInfo::getNumber, &CallInfo::setNumber},
        {"ConnectedNumber", &CallInfo::getConnectedNumber, &CallInfo::setConnectedNumber},
        {"TextC", &CallInfo::getTextC, &CallInfo::setTextC},
        {"TextD", &CallInfo::getTextD, &CallInfo::setTextD},
        {"TimeAndDate", &CallInfo::getTimeAndDate, &CallInfo::setTimeAndDate},
    }};
    static constexpr std::array<NumberField<CallInfo>, 5> kNumbers{{
        number<CallInfo, &CallInfo::getLogTarget, &CallInfo::setLogTarget>("LogTarget"),
        number<CallInfo, &CallInfo::getPresentationA, &CallInfo::setPresentationA>("PresentationA"),
        number<CallInfo, &CallInfo::getPresentationB, &CallInfo::setPresentationB>("PresentationB"),
        number<CallInfo, &CallInfo::getPresentationC, &CallInfo::setPresentationC>("PresentationC"),
        number<CallInfo, &CallInfo::getPresentationD, &CallInfo::setPresentationD>("PresentationD"),
    }};
};

template <>
struct Fields<Duration> : NoFields<Duration> {
    static constexpr std::array<TextField<Duration>, 1> kTexts{{
        {"Duration", &Duration::getDuration, &Duration::setDuration},
    }};
};

template <>
struct Fields<TimeFormat> : NoFields<TimeFormat> {
    static constexpr std::array<NumberField<TimeFormat>, 1> kNumbers{{
        number<TimeFormat, &TimeFormat::getTimeFormat, &TimeFormat::setTimeFormat>("TimeFormat"),
    }};
};

template <>
struct Fields<Redirecting> : NoFields<Redirecting> {
    static constexpr std::array<TextField<Redirecting>, 2> kTexts{{
        {"RedirectingNumber", &Redirecting::getRedirectingNumber, &Redirecting::setRedirectingNumber},
        {"RedirectingName", &Redirecting::getRedirectingName, &Redirecting::setRedirectingName},
    }};
    static constexpr std::array<NumberField<Redirecting>, 4> kNumbers{{
        number<Redirecting, &Redirecting::getRedirectingNumberPresentation,
               &Redirecting::setRedirectingNumberPresentation>("RedirectingNumberPresentation"),
        number<Redirecting, &Redirecting::getRedirectingNamePresentation,
               &Redirecting::setRedirectingNamePresentation>("RedirectingNamePresentation"),
        number<Redirecting, &Redirecting::getTransferNumberType, &Redirecting::setTransferNumberType>(
            "TransferNumberType"),
        number<Redirecting, &Redirecting::getRedirectingReason, &Redirecting::setRedirectingReason>(
            "RedirectingReason"),
    }};
};

template <>
struct Fields<MissedCallItem::MissedCallInfo> : NoFields<MissedCallItem::MissedCallInfo> {
    using Info = MissedCallItem::MissedCallInfo;
    static constexpr std::array<TextField<Info>, 2> kTexts{{
        {"GroupText", &Info::getGroupText, &Info::setGroupText},
        {"LineKey", &Info::getLineKey, &Info::setLineKey},
    }};
    static constexpr std::array<FlagField<Info>, 1> kFlags{{
        {"CompletedElsewhere", &Info::getCompletedElsewhere, &Info::setCompletedElsewhere},
    }};
};

template <>
struct Fields<DialledCallItem::DialledCallInfo> : NoFields<DialledCallItem::DialledCallInfo> {
    using Info = DialledCallItem::DialledCallInfo;
    static constexpr std::array<TextField<Info>, 1> kTexts{{
        {"SubstituteNumber", &Info::getSubstituteNumber, &Info::setSubstituteNumber},
    }};
    static constexpr std::array<FlagField<Info>, 1> kFlags{{
        {"FeatureAccessCode", &Info::getFeatureAccessCode, &Info::setFeatureAccessCode},
    }};
};

template <>
struct Fields<ForwardedCallItem::ForwardedCallInfo> : NoFields<ForwardedCallItem::ForwardedCallInfo> {
    using Info = ForwardedCallItem::ForwardedCallInfo;
    static constexpr std::array<TextField<Info>, 1> kTexts{{
        {"ForwardedToNumber", &Info::getForwardedToNumber, &Info::setForwardedToNumber},
    }};
    static constexpr std::array<NumberField<Info>, 2> kNumbers{{
        number<Info, &Info::getForwardingTarget, &Info::setForwardingTarget>("ForwardingTarget"),
        number<Info, &Info::getForwardingReason, &Info::setForwardingReason>("ForwardingReason"),
    }};
};

template <>
struct Fields<Contact> : NoFields<Contact> {
    static constexpr std::array<TextField<Contact>, 17> kTexts{{
        {kUniqueId, &Contact::getUniqueId, &Contact::setUniqueId},
        {"Surname", &Contact::getSurname, &Contact::setSurname},
        {"Firstname", &Contact::getFirstname, &Contact::setFirstname},
        {"Office", &Contact::getOffice, &Contact::setOffice},
        {"Mobile", &Contact::getMobile, &Contact::setMobile},
        {"Private", &Contact::getPrivate, &Contact::setPrivate},
        {"Email", &Contact::getEmail, &Contact::setEmail},
        {"Group", &Contact::getGroup, &Contact::setGroup},
        {"Company", &Contact::getCompany, &Contact::setCompany},
        {"Office2", &Contact::getOffice2, &Contact::setOffice2},
        {"Address", &Contact::getAddress, &Contact::setAddress},
        {"Address2", &Contact::getAddress2, &Contact::setAddress2},
        {"JobFunction", &Contact::getJobFunction, &Contact::setJobFunction},
        {"Picture", &Contact::getPicture, &Contact::setPicture},
        {"VoiceDial", &Contact::getVoiceDial, &Contact::setVoiceDial},
        {"ExternalId", &Contact::getExternalId, &Contact::setExternalId},
        {"SearchNumber", &Contact::getSearchNumber, &Contact::setSearchNumber},
    }};
    static constexpr std::array<NumberField<Contact>, 2> kNumbers{{
        number<Contact, &Contact::getDefaultNumber, &Contact::setDefaultNumber>("DefaultNumber"),
        number<Contact, &Contact::getMatchedKindCode, &Contact::setMatchedKindCode>("MatchedKind"),
    }};
};

namespace detail {

template <typename Part, typename Object, typename Visitor>
void visitPart(Object& object, Visitor& visit) {
    using Class = std::remove_const_t<Object>;
    if constexpr (std::is_base_of_v<Part, Class>) {
        using Target = std::conditional_t<std::is_const_v<Object>, const Part, Part>;
        visit(static_cast<Target&>(object), Fields<Part>{});
    }
}

}  // namespace detail

/// Calls `visit(part, Fields<Part>)` for each class of the object: the base classes first, its own class
/// last.
template <typename Object, typename Visitor>
void forEachPart(Object& object, Visitor visit) {
    detail::visitPart<CallItem>(object, visit);
    detail::visitPart<CallItemWithPicture>(object, visit);
    detail::visitPart<CallInfo>(object, visit);
    detail::visitPart<Duration>(object, visit);
    detail::visitPart<TimeFormat>(object, visit);
    detail::visitPart<Redirecting>(object, visit);
    detail::visitPart<std::remove_const_t<Object>>(object, visit);
}

/// The word in the element `Type`, the kind of an entry.
template <typename Item>
inline constexpr const char* kTypeOf = ListTraits<Item>::kWord;
template <>
inline constexpr const char* kTypeOf<CallBackItem> = "callback";
template <>
inline constexpr const char* kTypeOf<Contact> = "contact";

/// True if items of the class hold occurrences.
template <typename Item>
inline constexpr bool kHasOccurrences = std::is_base_of_v<CallItemWithPicture, Item>;

inline constexpr const char* kTypeField = "Type";
inline constexpr const char* kOccurrence = "Occurrence";
inline constexpr const char* kContactSource = "ContactSource";
inline constexpr const char* kCallRecords = "CallRecords";
inline constexpr const char* kCallRecord = "CallRecord";

}  // namespace journalxml
