#pragma once

/// Texts that the communications service of the phone uses as markers in events and call records. Fixed strings:
/// compare them byte for byte.
namespace communicationsServiceTexts {

/// Device id of a telephone paired over Bluetooth; it also serves as the id of the call on it.
inline constexpr const char* content_bluetoothDeviceId = "bluetoothDeviceID";
/// Stands in the place of a number that the far end did not give.
inline constexpr const char* noNumberProvided = "noNumberProvided";

/// Private data of a Delivered event that rings for a reminder, not for a caller.
inline constexpr const char* content_callstatus_ReminderCall = "ReminderCall";
/// Private data of a CallInformation event by which the switch says that a call was missed.
inline constexpr const char* content_callstatus_MissedCall = "MissedCall";

/// Words in the private data of a CallBack event: what the callback waits for, and how far it has come.
inline constexpr const char* content_callback_onBusy = "onBusy";
inline constexpr const char* content_callback_onNoReply = "onNoReply";
inline constexpr const char* content_callback_onRequest = "onRequest";
inline constexpr const char* content_callback_requested = "requested";
inline constexpr const char* content_callback_ringing = "ringing";
inline constexpr const char* content_callback_done = "done";

/// Status words of a SystemStatus event.
inline constexpr const char* systemState_cleanup = "cleanup";
inline constexpr const char* systemState_disabled = "disabled";
inline constexpr const char* systemState_partiallyDisabled = "partiallyDisabled";
inline constexpr const char* systemState_reset = "reset";
inline constexpr const char* systemState_stopped = "stopped";
inline constexpr const char* systemState_enabled = "enabled";
inline constexpr const char* systemState_normal = "normal";

}  // namespace communicationsServiceTexts
