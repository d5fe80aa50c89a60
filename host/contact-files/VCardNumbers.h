#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "host/contact-files/ContactReader.h"
#include "host/contact-files/VCardLine.h"

namespace host {

/// The telephone numbers of one vCard, and their way into the four places of a contact. One thread at a time.
///
/// Cell numbers go to the mobile place, home numbers to the private one, work numbers to office and then to the second
/// office. Numbers that say nothing of the kind, or whose place is taken, then fill what is free: office, second office,
/// mobile, private. Numbers of fax machines and pagers are left out.
class VCardNumbers {
public:
    /// Our own mark of a number that stands in the second office place while the first is free.
    static constexpr const char* kPlace = "X-CALLJOURNAL-PLACE";

    /// Takes a TEL property; in the order of the card.
    void take(const VCardLine& property);
    /// Puts the numbers into the record's contact, the most preferred one as its default; says what is left out.
    void fill(ContactRecord& record) const;

private:
    /// Positions as in `Contact::getPhoneNumber`, the best first; 0 is none.
    using Places = std::array<int, 2>;
    struct Number {
        std::string text;
        Places wanted{};
        int preference = 0;
        bool voice = true;
    };
    /// By position; the first is none.
    using Slots = std::array<const Number*, 5>;

    static Places placesFor(const VCardLine& property);
    static bool put(const Number& number, const int* first, const int* last, Slots& slots);

    std::vector<Number> m_numbers;
};

}  // namespace host
