#include "host/directory/PhonebookInvoker.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/directory/Phonebook.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/PhonebookMessage.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

/// The maximum number of contacts in one response: a longer read of the database would keep a call waiting.
constexpr std::size_t kMaxRows = 1000;

std::string readResponse(const journalxml::PhonebookRequest& request, Phonebook& phonebook) {
    std::optional<ContactPage> page =
        phonebook.search(request.search, request.offset, std::min(request.limit, kMaxRows));
    return page ? journalxml::buildPhonebookPage({page->total, std::move(page->contacts)})
                : JournalServiceHelper::FAILURE;
}

std::string importResponse(const journalxml::PhonebookRequest& request, Phonebook& phonebook) {
    const std::optional<ImportCounts> counts = phonebook.import(request.contacts);
    return counts ? journalxml::buildPhonebookImported({counts->added, counts->changed, counts->unchanged})
                  : JournalServiceHelper::FAILURE;
}

}  // namespace

std::string PhonebookInvoker::responseTo(std::string_view message, Executable* target) const {
    auto* const phonebook = dynamic_cast<Phonebook*>(target);
    const auto request = journalxml::parsePhonebookRequest(message);
    if (phonebook == nullptr || !request) {
        logAppUni("Phonebook", __FILE_NAME__, 3, __LINE__,
                  "a request for the phonebook cannot be carried out: %s",
                  request ? "there is none" : "it cannot be read");
        return JournalServiceHelper::FAILURE;
    }
    return request->contacts.empty() ? readResponse(*request, *phonebook)
                                     : importResponse(*request, *phonebook);
}

}  // namespace host
