#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// The journal's items as JSON objects, the same in the HTTP API and the command line. Pure functions; any
/// thread may call.
namespace host {

/// {"entryId","uniqueId","list","firstName","surname","picture","number","numberText","time", "viewed"
/// (missed only), "groupBy" (dialled only), "occurrences": [...]}: `number` and `time` are those of the
/// newest occurrence, which comes first; `numberText` is the same as `number`. An occurrence has "number",
/// "connectedNumber", "time", "redirectingNumber" and "redirectingName", and the fields of its list. Times
/// are ISO 8601 in UTC.
[[nodiscard]] nlohmann::ordered_json itemJson(const MissedCallItem& item);
[[nodiscard]] nlohmann::ordered_json itemJson(const DialledCallItem& item);
[[nodiscard]] nlohmann::ordered_json itemJson(const ReceivedCallItem& item);
[[nodiscard]] nlohmann::ordered_json itemJson(const ForwardedCallItem& item);
/// {"entryId","firstName","surname","number","numberText","numberType","time","type","state","deviceId"}; the
/// types and the state are words ("office", "onBusy", "requested").
[[nodiscard]] nlohmann::ordered_json itemJson(const CallBackItem& item);

/// {"id", ...}: the unique id, and the fields of `contactFields` by their names.
[[nodiscard]] nlohmann::ordered_json itemJson(const Contact& contact);

/// `json` as one line of text. Bytes that are no UTF-8 become U+FFFD and do not throw.
[[nodiscard]] std::string jsonText(const nlohmann::ordered_json& json);

}  // namespace host
