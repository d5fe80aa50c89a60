#include <cstddef>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>

#include "fuzz/support/Property.h"
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
            const std::string text = host::contactFileEntry(host::ContactFormat::eVCard, record->contact);
            fuzz::requireUtf8(text, "a card is not UTF-8");
            fuzz::require(!fuzz::hasControlCharacters(text), "a card has control characters");
            std::istringstream card(text);
            const auto again = host::makeContactReader(card, host::ContactFormat::eVCard)->next();
            fuzz::require(again && again->refusal.empty() && again->contact == record->contact,
                          "a contact that was written as a card is read as another one");
        }
    } catch (const host::ContactFileError&) {
        return 0;
    }
    return 0;
}
