#pragma once

#include "journalservice/JournalService.h"

/// The journal of a telephone at a Qorvex switch. It loads and behaves as `JournalService` does.
class JournalServiceQorvex : public JournalService {
public:
    explicit JournalServiceQorvex(ObserverNotifierIfc* notifier) : JournalService(notifier) {}
};
