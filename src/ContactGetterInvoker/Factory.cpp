// The framework finds this by name in the loaded library; it belongs into the shared library only.

#include <new>

#include "journalservice/ContactGetterInvoker.h"

/// A new `Invoker`, owned by the caller; null when there is no memory.
extern "C" __attribute__((visibility("default"))) void* createContactGetterInvoker() noexcept {
    return static_cast<Invoker*>(new (std::nothrow) ContactGetterInvoker);
}
