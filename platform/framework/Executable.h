#pragma once

class Context;

/// An object that a service framework holds by name and drives: a service, a proxy, a component of the host.
///
/// The framework keeps one `Executable` for each registered name and returns it from `Context::findService`;
/// the caller casts it with `dynamic_cast` to the interface that it needs (`CSTAServiceIfc`,
/// `ClockServiceIfc`, ...), so an implementation derives from both `Executable` and its interface.
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
    /// A timer of this object has expired; `id` is the one that `createTimer` returned.
    virtual void timerEvent(int id) { static_cast<void>(id); }
};
