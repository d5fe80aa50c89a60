#pragma once

/// The part of a service that a framework may run on a thread of its own. A service that only reacts to calls
/// leaves `run` empty.
class Threadable {
public:
    Threadable() = default;
    Threadable(const Threadable&) = delete;
    Threadable& operator=(const Threadable&) = delete;
    virtual ~Threadable() = default;

    /// Called once after `init`. Returning at once is allowed.
    virtual void run() = 0;
};
