#pragma once

#include "platform/framework/Executable.h"
#include "platform/framework/Threadable.h"

/// A service that the framework loads from a shared library through an exported factory.
///
/// The factory returns the object as `void*` that points at this base (`static_cast<Service*>` is the way
/// back); the framework owns it from then on and destroys it through this class. Order of calls: `init`, `run`,
/// any number of events, timers and requests, `shutdown`, destruction.
class Service : public Executable, public Threadable {
public:
    /// A text message addressed to the service itself, past its invoker. The base ignores it.
    virtual void handleMsg(const char* message, int length) {
        static_cast<void>(message);
        static_cast<void>(length);
    }
};
