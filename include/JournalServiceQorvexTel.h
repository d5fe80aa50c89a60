#pragma once

#include "include/JournalServiceQorvex.h"

/// The service variant that the framework gets from `createJournalService`.
class JournalServiceQorvexTel : public JournalServiceQorvex {
public:
    explicit JournalServiceQorvexTel(ObserverNotifierIfc* notifier) : JournalServiceQorvex(notifier) {}
};
