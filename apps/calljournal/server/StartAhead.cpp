#include "apps/calljournal/server/StartAhead.h"

#include <exception>

#include "host/digits/NumberingPlan.h"
#include "host/framework/LibraryLoader.h"
#include "host/history/Zone.h"

namespace calljournal {
namespace {

void load() {
    try {
        static_cast<void>(host::LibraryLoader::load(host::LibraryLoader::locate(
            host::LibraryLoader::kJournalLibrary, host::LibraryLoader::programDirectory())));
        host::NumberingPlan::load();
        static_cast<void>(host::Zone::ofMachine());
    } catch (const std::exception&) {
        // The first user reports it.
    }
}

}  // namespace

StartAhead::StartAhead() : m_thread(&load) {}

StartAhead::~StartAhead() {
    m_thread.join();
}

}  // namespace calljournal
