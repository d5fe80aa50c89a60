#include <new>

#include "journalservice/JournalServiceQorvexTel.h"
#include "src/JournalService/base/Log.h"

/// What the framework calls by name: a new journal service, owned by the framework, as a pointer at its `Service` base;
/// null when there is no memory for one.
extern "C" __attribute__((visibility("default"))) void* createJournalService() {
    try {
        return static_cast<Service*>(new JournalServiceQorvexTel(nullptr));
    } catch (const std::bad_alloc&) {
        LOG_JOURNAL(2, "createJournalService: out of memory");
        return nullptr;
    }
}
