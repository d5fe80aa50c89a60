// Exported factories: the framework finds them by name in the loaded library. Part of the shared library
// only.

#include <new>

#include "journalservice/ContactGetterInvoker.h"

/// Returns a new `Invoker`, owned by the caller; null if there is no memory.
extern "C" __attribute__((visibility("default"))) void* createContactGetterInvoker() noexcept {
    return static_cast<Invoker*>(new (std::nothrow) ContactGetterInvoker);
}
