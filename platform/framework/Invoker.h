#pragma once

class Executable;
class FrameworkContext;
class InvokerResponse;

/// Converts a text message for a service to a call of that service. An exported factory makes it and returns
/// it as `void*` to this base; the framework owns it.
///
/// Threads: the framework may call `handleMessage` from several threads at once.
class Invoker {
public:
    Invoker() = default;
    Invoker(const Invoker&) = delete;
    Invoker& operator=(const Invoker&) = delete;
    virtual ~Invoker() = default;

    /// Handles one message for `target` and replies through `response`, whose completion operation is called
    /// exactly once. `message` is `length` bytes, not terminated, and borrowed for the call.
    virtual void handleMessage(Executable* target, const char* message, int length,
                               InvokerResponse* response) = 0;

    /// Called once before the first message; `context` is borrowed and outlives the invoker.
    virtual void initInvoker(FrameworkContext* context) = 0;
};
