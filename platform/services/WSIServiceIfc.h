#pragma once

/// The phone's web-services interface, which manages its users. Registered as "WSIServiceIfc". Any thread may
/// call.
class WSIServiceIfc {
public:
    WSIServiceIfc() = default;
    WSIServiceIfc(const WSIServiceIfc&) = delete;
    WSIServiceIfc& operator=(const WSIServiceIfc&) = delete;
    virtual ~WSIServiceIfc() = default;

    /// True if the current user is a user of unified communications.
    [[nodiscard]] virtual bool isCurrentUserUC() = 0;
};
