#pragma once

/// Names of the platform's own management keys.
struct UlmoTags {
    /// "true" while a hosted call-control provider keeps the call log of the line.
    static constexpr const char* RINGCENTRAL_API_SYNC_CALL_LOG = "ringcentral-api-sync-call-log";
};
