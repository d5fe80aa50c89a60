#pragma once

#include <string>

#include "host/log/PrivateText.h"
#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// A change of the journal as a sentence: "missed call from Ann Müller (4711)", "a received call was
/// deleted". `action` is the observer interface's `ActionType`; an unknown value is described as a change of
/// the list. `parties` is for a log. Names and numbers are not escaped: use `printable` for a terminal. Pure
/// functions; any thread may call.
namespace host {

[[nodiscard]] std::string describeChange(const MissedCallItem& item, int action,
                                         Parties parties = Parties::eShown);
[[nodiscard]] std::string describeChange(const DialledCallItem& item, int action,
                                         Parties parties = Parties::eShown);
[[nodiscard]] std::string describeChange(const ReceivedCallItem& item, int action,
                                         Parties parties = Parties::eShown);
[[nodiscard]] std::string describeChange(const ForwardedCallItem& item, int action,
                                         Parties parties = Parties::eShown);
[[nodiscard]] std::string describeChange(const CallBackItem& item, int action,
                                         Parties parties = Parties::eShown);

/// "3 missed entries are not viewed", "no callbacks". The journal counts entries, each with one call or more.
[[nodiscard]] std::string describeMissedCount(int count);
[[nodiscard]] std::string describeCallbackCount(int count);

}  // namespace host
