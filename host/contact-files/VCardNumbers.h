#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "host/contact-files/ContactReader.h"
#include "host/contact-files/VCardProperty.h"

namespace host {

/// The telephone numbers of one vCard, and their mapping to the four numbers of a contact. One thread at a
/// time.
///
/// Cell numbers become the mobile number, home numbers the private one, work numbers the office and then the
/// second office one. Numbers of no kind, or whose place is taken, then fill the free places: office, second
/// office, mobile, private. Numbers of fax machines and pagers are left out.
class VCardNumbers {
public:
    /// This program's parameter for a number that is the second office number while the first is empty.
    static constexpr const char* kPlace = "X-CALLJOURNAL-PLACE";

    /// Adds a TEL property; call it in the order of the card.
    void take(const VCardProperty& property);
    /// Sets the numbers of the record's contact, the most preferred one as its default; adds a remark for
    /// each number that is left out.
    void fill(ContactRecord& record) const;

private:
    /// Positions as in `Contact::getPhoneNumber`, the best first; 0 means none.
    using Places = std::array<int, 2>;
    struct Number {
        std::string text;
        Places wanted{};
        int preference = 0;
        bool voice = true;
    };
    /// By position; index 0 is unused.
    using Slots = std::array<const Number*, 5>;

    static Places placesFor(const VCardProperty& property);
    static bool put(const Number& number, const int* first, const int* last, Slots& slots);

    std::vector<Number> m_numbers;
};

}  // namespace host
