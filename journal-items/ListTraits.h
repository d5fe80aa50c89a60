#pragma once

#include <optional>
#include <string_view>
#include <tuple>

#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// The five lists of the journal. The database stores the values; new ones are added at the end.
enum class ListName { eMissed, eDialled, eReceived, eForwarded, eCallbacks };

/// The constants of one list, by the type of its items: one specialisation for each list.
///
///     kList       the list's enumerator
///     kWord       the list's name on the command line, in JSON and in routes: "missed"
///     kCallWord   the name of one call in a sentence: "missed call"
///     kTable      the list's table, which is also the schema name of its documents
///     Info        the type of an occurrence; callbacks have none
///
/// `ListXml` (platform/journal-library/ListXml.h) has the XML builders and parsers of a list.
template <typename Item>
struct ListTraits;

template <>
struct ListTraits<MissedCallItem> {
    using Info = MissedCallItem::MissedCallInfo;
    static constexpr ListName kList = ListName::eMissed;
    static constexpr const char* kWord = "missed";
    static constexpr const char* kCallWord = "missed call";
    static constexpr const char* kTable = "CallLogMissedCalls";
};

template <>
struct ListTraits<DialledCallItem> {
    using Info = DialledCallItem::DialledCallInfo;
    static constexpr ListName kList = ListName::eDialled;
    static constexpr const char* kWord = "dialled";
    static constexpr const char* kCallWord = "dialled call";
    static constexpr const char* kTable = "CallLogDialledCalls";
};

template <>
struct ListTraits<ReceivedCallItem> {
    using Info = ReceivedCallItem::ReceivedCallInfo;
    static constexpr ListName kList = ListName::eReceived;
    static constexpr const char* kWord = "received";
    static constexpr const char* kCallWord = "received call";
    static constexpr const char* kTable = "CallLogReceivedCalls";
};

template <>
struct ListTraits<ForwardedCallItem> {
    using Info = ForwardedCallItem::ForwardedCallInfo;
    static constexpr ListName kList = ListName::eForwarded;
    static constexpr const char* kWord = "forwarded";
    static constexpr const char* kCallWord = "forwarded call";
    static constexpr const char* kTable = "CallLogForwardedCalls";
};

template <>
struct ListTraits<CallBackItem> {
    static constexpr ListName kList = ListName::eCallbacks;
    static constexpr const char* kWord = "callbacks";
    static constexpr const char* kCallWord = "callback";
    static constexpr const char* kTable = "CallLogCallBacks";
};

/// `Container<Item>` for the items of all five lists: `ForEachList<JournalList>` is a tuple of five lists.
template <template <typename> typename Container>
using ForEachList =
    std::tuple<Container<MissedCallItem>, Container<DialledCallItem>, Container<ReceivedCallItem>,
               Container<ForwardedCallItem>, Container<CallBackItem>>;

/// Calls `work.template operator()<Item>()` for the item type of `list` and returns its result:
/// `withItemOf(list, []<typename Item>() { return ListTraits<Item>::kTable; })`.
template <typename Work>
constexpr decltype(auto) withItemOf(ListName list, Work&& work) {
    switch (list) {
        case ListName::eMissed: return work.template operator()<MissedCallItem>();
        case ListName::eDialled: return work.template operator()<DialledCallItem>();
        case ListName::eReceived: return work.template operator()<ReceivedCallItem>();
        case ListName::eForwarded: return work.template operator()<ForwardedCallItem>();
        case ListName::eCallbacks: break;
    }
    return work.template operator()<CallBackItem>();
}

/// Calls `work.template operator()<Item>()` for each list, in the order of `ListName`.
template <typename Work>
constexpr void forEachList(Work&& work) {
    work.template operator()<MissedCallItem>();
    work.template operator()<DialledCallItem>();
    work.template operator()<ReceivedCallItem>();
    work.template operator()<ForwardedCallItem>();
    work.template operator()<CallBackItem>();
}

/// The list's name: "missed", "dialled", "received", "forwarded", "callbacks".
[[nodiscard]] constexpr std::string_view wordOf(ListName list) noexcept {
    return withItemOf(list, []<typename Item>() -> std::string_view { return ListTraits<Item>::kWord; });
}

/// The list of a name; std::nullopt for another word.
[[nodiscard]] constexpr std::optional<ListName> listNamed(std::string_view word) noexcept {
    std::optional<ListName> named;
    forEachList([&named, word]<typename Item>() {
        if (word == ListTraits<Item>::kWord) {
            named = ListTraits<Item>::kList;
        }
    });
    return named;
}

/// The list of a table; std::nullopt for another name.
[[nodiscard]] constexpr std::optional<ListName> listOfTable(std::string_view table) noexcept {
    std::optional<ListName> found;
    forEachList([&found, table]<typename Item>() {
        if (table == ListTraits<Item>::kTable) {
            found = ListTraits<Item>::kList;
        }
    });
    return found;
}
