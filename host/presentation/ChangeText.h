#pragma once

#include <string>

#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// What happened to the journal, in a sentence for people: "missed call from Ann Müller (4711)", "a received call was
/// deleted". `action` is the observer interface's `ActionType`; a value that is unknown reads as a change of the list.
/// Names and numbers stand in the sentence as they are: whoever shows it to a terminal makes it printable. Pure
/// functions; any thread may call.
namespace host {

[[nodiscard]] std::string describeChange(const MissedCallItem& item, int action);
[[nodiscard]] std::string describeChange(const DialledCallItem& item, int action);
[[nodiscard]] std::string describeChange(const ReceivedCallItem& item, int action);
[[nodiscard]] std::string describeChange(const ForwardedCallItem& item, int action);
[[nodiscard]] std::string describeChange(const CallBackItem& item, int action);

/// "3 new missed calls", "no callbacks".
[[nodiscard]] std::string describeMissedCount(int count);
[[nodiscard]] std::string describeCallbackCount(int count);

}  // namespace host
