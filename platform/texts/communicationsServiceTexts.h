#pragma once

/// Marker texts of the phone's communications service in events and call records. Compare them byte for byte.
namespace communicationsServiceTexts {

/// Device id of a telephone paired over Bluetooth; also the id of the call on it.
inline constexpr const char* content_bluetoothDeviceId = "bluetoothDeviceID";
/// Replaces a number that the far end did not report.
inline constexpr const char* noNumberProvided = "noNumberProvided";

/// Private data of a Delivered event for a reminder, not for a caller.
inline constexpr const char* content_callstatus_ReminderCall = "ReminderCall";
/// Private data of a CallInformation event that reports a missed call.
inline constexpr const char* content_callstatus_MissedCall = "MissedCall";

/// Words in the private data of a CallBack event: the reason and the progress of the callback.
inline constexpr const char* content_callback_onBusy = "onBusy";
inline constexpr const char* content_callback_onNoReply = "onNoReply";
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
