#include "apps/calljournal/ContactPages.h"

#include <algorithm>

#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"
#include "platform/journal-library/PhonebookMessage.h"

namespace calljournal {
namespace {

constexpr std::size_t kPageSize = 1000;

}  // namespace

std::size_t visitContacts(host::RemoteClient& client, const std::string& search,
                          std::optional<std::size_t> limit,
                          const std::function<void(const Contact&)>& visitor) {
    journalxml::PhonebookRequest request;
    request.search = search;
    for (;;) {
        request.limit = std::min(kPageSize, limit.value_or(request.offset + kPageSize) - request.offset);
        const auto page =
            journalxml::parsePhonebookPage(client.call(journalxml::buildPhonebookRead(request)));
        if (!page) {
            throw host::RemoteError("calljournal could not answer; its log says why");
        }
        for (const Contact& contact : page->contacts) {
            visitor(contact);
        }
        request.offset += page->contacts.size();
        if (page->contacts.empty() || request.offset >= std::min(page->total, limit.value_or(page->total))) {
            return page->total;
        }
    }
}

}  // namespace calljournal
