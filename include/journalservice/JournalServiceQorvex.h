#pragma once

#include "journalservice/JournalService.h"

/// The journal of a telephone at a Qorvex switch. Behaves as `JournalService`.
class JournalServiceQorvex : public JournalService {
public:
    explicit JournalServiceQorvex(ObserverNotifierIfc* notifier) : JournalService(notifier) {}
};
