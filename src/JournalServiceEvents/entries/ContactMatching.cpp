#include "src/JournalServiceEvents/entries/ContactMatching.h"

namespace journal {

bool namesMatch(const CallItem& item, const Contact& contact) {
    return item.getSurname() == contact.getSurname() && item.getFirstname() == contact.getFirstname();
}

bool contactMatchesCallInfo(const CallItem& item, const CallInfo& info, const Contact& contact) {
    if (!contact.getSearchNumber().empty()) {
        return info.getNumber() == contact.getSearchNumber();
    }
    if (contact.getSurname().empty()) {
        return info.getNumber().empty() && item.getFirstname().empty() && item.getSurname().empty();
    }
    return info.getNumber().empty() && namesMatch(item, contact);
}

bool contactMatchesMissedCall(const MissedCallItem& item, const Contact& contact,
                              const std::string& lineKey) {
    const auto& infos = item.getMissedCallInfoList();
    return !infos.empty() && infos.front().getLineKey() == lineKey &&
           contactMatchesCallInfo(item, infos.front(), contact);
}

bool contactMatchesReceivedCall(const ReceivedCallItem& item, const Contact& contact) {
    const auto& infos = item.getReceivedCallInfoList();
    return !infos.empty() && contactMatchesCallInfo(item, infos.front(), contact);
}

bool contactMatchesForwardedCall(const ForwardedCallItem& item, const Contact& contact) {
    const auto& infos = item.getForwardedCallInfoList();
    return !infos.empty() && contactMatchesCallInfo(item, infos.front(), contact);
}

bool contactMatchesDialledCall(const DialledCallItem& item, const Contact& contact) {
    return !item.getDialledCallInfoList().empty() &&
           item.getJournalSeviceGroupBy() == contact.getSearchNumber();
}

bool contactMatchesCallBack(const CallBackItem& item, const Contact& contact) {
    return item.getNumber() == contact.getSearchNumber();
}

bool partiesAreNotTheSame(const std::string& a, const std::string& b) {
    return !a.empty() && a != b;
}

}  // namespace journal
