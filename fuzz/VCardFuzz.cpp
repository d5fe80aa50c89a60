#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>

#include "host/contact-files/ContactFormat.h"
#include "host/contact-files/ContactWriter.h"

// Feeds any bytes to the vCard reader. An accepted contact is written as a card and must be read back equal;
// otherwise an import of exported contacts would change the phonebook.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream file(std::string(reinterpret_cast<const char*>(data), size));
    try {
        const auto reader = host::makeContactReader(file, host::ContactFormat::eVCard);
        while (const std::optional<host::ContactRecord> record = reader->next()) {
            if (!record->refusal.empty()) {
                continue;
            }
            std::istringstream card(host::contactFileEntry(host::ContactFormat::eVCard, record->contact));
            const auto again = host::makeContactReader(card, host::ContactFormat::eVCard)->next();
            if (!again || !again->refusal.empty() || !(again->contact == record->contact)) {
                std::abort();
            }
        }
    } catch (const host::ContactFileError&) {
        return 0;
    }
    return 0;
}
