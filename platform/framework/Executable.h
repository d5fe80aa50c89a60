#pragma once

class Context;

/// Anything that a service framework holds by name and can drive: a service, a proxy, a host's own part.
///
/// The framework keeps one `Executable` for each registered name and gives it out through
/// `Context::findService`; the finder casts it with `dynamic_cast` to the interface that it needs
/// (`CSTAServiceIfc`, `ClockServiceIfc`, ...), so an implementation derives from `Executable` and from its
/// interface side by side.
///
/// Threads: the framework calls `init`, `shutdown` and `timerEvent` of one object one at a time.
class Executable {
public:
    Executable() = default;
    Executable(const Executable&) = delete;
    Executable& operator=(const Executable&) = delete;
    virtual ~Executable() = default;

    /// Called once before anything else. `context` outlives the object.
    virtual void init(Context& context) { static_cast<void>(context); }
    /// Called once before the object is destroyed.
    virtual void shutdown() {}
    /// A timer that this object created through its `Context` has expired; `id` is the one `createTimer` gave.
    virtual void timerEvent(int id) { static_cast<void>(id); }
};
