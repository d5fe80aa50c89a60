#pragma once

/// State of the monitored device's own connection (ECMA-269, local connection state). Plain `int` in the
/// events, because a switch may report a value that is not listed.
enum CSTALocalConnectionState : int {
    CSTA_LCS_Null = 0,
    CSTA_LCS_Initiated = 1,
    CSTA_LCS_Alerting = 2,
    CSTA_LCS_Connected = 3,
    CSTA_LCS_Hold = 4,
    CSTA_LCS_Queued = 5,
    CSTA_LCS_Fail = 6,
};
