#pragma once

/// The cause of an event in the phone's own numbering. Plain `int` in the events, because a switch may report
/// a value that is not listed. A link with another protocol (CSTA XML names causes by word) maps to these
/// values in one table.
enum CSTAEventCause : int {
    CSTA_EC_None = 0,
    CSTA_EC_Unknown = 1,
    CSTA_EC_Alternate = 2,
    /// The connection was put on hold in order to transfer it.
    CSTA_EC_HeldForTransfer = 3,
    CSTA_EC_CallBack = 4,
    /// The cleared connection is the other leg of the last held call.
    CSTA_EC_Transfer = 5,
    CSTA_EC_CallForwardImmediate = 6,
    CSTA_EC_CallForwardBusy = 7,
    CSTA_EC_CallForwardNoAnswer = 8,
    CSTA_EC_CallForward = 9,
    CSTA_EC_CallNotAnswered = 10,
    CSTA_EC_GroupPickupNotify = 11,
    CSTA_EC_CampOn = 12,
    CSTA_EC_CallPickup = 13,
    CSTA_EC_CallPark = 14,
    CSTA_EC_CallRetrievePark = 15,
    CSTA_EC_Busy = 16,
    CSTA_EC_DestNotObtainable = 17,
    CSTA_EC_NetworkCongestion = 20,
    CSTA_EC_NewCall = 22,
    CSTA_EC_NoAvailableAgents = 23,
    CSTA_EC_Override = 24,
    CSTA_EC_Forwarded = 25,
    CSTA_EC_Overflow = 26,
    CSTA_EC_Recall = 27,
    CSTA_EC_DirectedPickup = 30,
    CSTA_EC_DoNotDisturb = 31,
    CSTA_EC_Conference = 32,
    CSTA_EC_PickupFromPark = 34,
    CSTA_EC_CallCancelled = 35,
    CSTA_EC_CompletedElsewhere = 40,
    CSTA_EC_NormalClearing = 48,
    CSTA_EC_Redirected = 49,
    CSTA_EC_RedirectedByDistribution = 50,
    /// A cause without a number of its own, where 0 and 1 would be too specific (a Failed event).
    CSTA_EC_Other = 99,
};
