// Exported factories: the framework finds them by name in the loaded library. Part of the shared library
// only.

#include <new>

#include "journalservice/JournalServiceInvoker.h"
#include "journalservice/JournalServiceObserverProxy.h"

/// Returns a new `Invoker`, owned by the caller; null if there is no memory.
extern "C" __attribute__((visibility("default"))) void* createJournalServiceInvoker() noexcept {
    return static_cast<Invoker*>(new (std::nothrow) JournalServiceInvoker);
}

/// Returns a new `Proxy`, owned by the caller; null if there is no memory.
extern "C" __attribute__((visibility("default"))) void* createJournalServiceObserverProxy() noexcept {
    return static_cast<Proxy*>(new (std::nothrow) JournalServiceObserverProxy);
}
