#pragma once

/// The phone's web-services interface, which knows its users. Registered as "WSIServiceIfc". Any thread may call.
class WSIServiceIfc {
public:
    WSIServiceIfc() = default;
    WSIServiceIfc(const WSIServiceIfc&) = delete;
    WSIServiceIfc& operator=(const WSIServiceIfc&) = delete;
    virtual ~WSIServiceIfc() = default;

    /// Whether the current user is a user of unified communications.
    [[nodiscard]] virtual bool isCurrentUserUC() = 0;
};
