#pragma once

#include "platform/framework/Executable.h"
#include "platform/framework/Threadable.h"

/// A service that the framework loads from a shared library through an exported factory.
///
/// The factory returns the object as `void*` to this base (the framework casts it back with
/// `static_cast<Service*>`); the framework then owns it and destroys it through this class. Order of calls:
/// `init`, `run`, any number of events, timers and requests, `shutdown`, destruction.
class Service : public Executable, public Threadable {
public:
    /// A text message to the service itself, not through its invoker. The base ignores it.
    virtual void handleMsg(const char* message, int length) {
        static_cast<void>(message);
        static_cast<void>(length);
    }
};
