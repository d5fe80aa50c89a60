#pragma once

/// A unified-communications client on the phone, which keeps a journal of its own while it runs. Registered as
/// "UCServiceIfc". Any thread may call.
class UCServiceIfc {
public:
    UCServiceIfc() = default;
    UCServiceIfc(const UCServiceIfc&) = delete;
    UCServiceIfc& operator=(const UCServiceIfc&) = delete;
    virtual ~UCServiceIfc() = default;

    [[nodiscard]] virtual bool isRunning() = 0;
    /// The journal was loaded anew: what the service shows of it is out of date.
    virtual void refreshJournal() = 0;
};
