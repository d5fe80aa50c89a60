// A library that needs a function which no program provides.

extern "C" int noProgramHasThisFunction();
extern "C" __attribute__((visibility("default"))) void* createJournalService();

extern "C" void* createJournalService() {
    return noProgramHasThisFunction() == 0 ? nullptr : reinterpret_cast<void*>(&createJournalService);
}
