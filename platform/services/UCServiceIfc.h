#pragma once

/// A unified-communications client on the phone, which keeps a journal of its own while it runs. Registered
/// as "UCServiceIfc". Any thread may call.
class UCServiceIfc {
public:
    UCServiceIfc() = default;
    UCServiceIfc(const UCServiceIfc&) = delete;
    UCServiceIfc& operator=(const UCServiceIfc&) = delete;
    virtual ~UCServiceIfc() = default;

    [[nodiscard]] virtual bool isRunning() = 0;
    /// The journal was reloaded: the service must refresh its view of it.
    virtual void refreshJournal() = 0;
};
