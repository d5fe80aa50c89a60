#pragma once

/// Values of the management key "software-type".
namespace softwaretypes {

inline constexpr const char* sip = "Norlith SIP";
inline constexpr const char* qorvex = "Norlith Qorvex";

}  // namespace softwaretypes
