// The framework finds these by name in the loaded library; they belong into the shared library only.

#include <new>

#include "journalservice/JournalServiceInvoker.h"
#include "journalservice/JournalServiceObserverProxy.h"

/// A new `Invoker`, owned by the caller; null when there is no memory.
extern "C" __attribute__((visibility("default"))) void* createJournalServiceInvoker() noexcept {
    return static_cast<Invoker*>(new (std::nothrow) JournalServiceInvoker);
}

/// A new `Proxy`, owned by the caller; null when there is no memory.
extern "C" __attribute__((visibility("default"))) void* createJournalServiceObserverProxy() noexcept {
    return static_cast<Proxy*>(new (std::nothrow) JournalServiceObserverProxy);
}
