#pragma once

#include <thread>

namespace calljournal {

/// Loads what the start of a server needs besides its database, while that is opened: the service library,
/// the numbering plans and the rules of time zones. They stay loaded.
///
/// What cannot be loaded is reported by its first user.
class StartAhead {
public:
    /// Starts a thread that does it.
    StartAhead();
    /// Waits for its end.
    ~StartAhead();
    StartAhead(const StartAhead&) = delete;
    StartAhead& operator=(const StartAhead&) = delete;

private:
    std::thread m_thread;
};

}  // namespace calljournal
