#include <new>

#include "journalservice/JournalServiceQorvexTel.h"
#include "src/JournalService/base/Log.h"

/// Exported factory, which the framework finds by name. Returns a new journal service, owned by the
/// framework, as a pointer to its `Service` base; null if there is no memory.
extern "C" __attribute__((visibility("default"))) void* createJournalService() {
    try {
        return static_cast<Service*>(new JournalServiceQorvexTel(nullptr));
    } catch (const std::bad_alloc&) {
        LOG_JOURNAL(2, "createJournalService: out of memory");
        return nullptr;
    }
}
