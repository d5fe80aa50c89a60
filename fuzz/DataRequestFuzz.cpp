#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/support/Property.h"
#include "fuzz/support/ScratchDatabase.h"
#include "host/data/SqliteDataAccess.h"
#include "host/digits/DigitAnalysis.h"
#include "platform/client-utils/Utf8.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataRequest.h"
#include "platform/journal-library/JournalServiceHelper.h"

// Feeds any bytes to the database as data requests; form feeds separate them, because XML has none. A request
// that fails changes no row, no request makes the database unhealthy, and what is read can be written again
// without a change.

namespace {

using fuzz::require;
using Helper = CallListDatabaseAdapterHelper;

constexpr std::size_t kMaxRequests = 8;

class Access {
public:
    explicit Access(host::Database& database) : m_access(database, "2001", &m_digits) {}

    void handle(const std::string& request) {
        const auto parsed = journalxml::parseDataRequest(request);
        const std::string before = parsed ? content() : std::string();
        const std::string response = process(request);
        if (!parsed) {
            require(response == Helper::FAILED, "an unreadable request does not fail");
            return;
        }
        const bool changes = parsed->reason != journalxml::DataRequest::Reason::eRead;
        require((changes && response != Helper::FAILED) || content() == before,
                "a request that fails, or reads, changes the data");
    }

    void checkRewritten() {
        const std::string before = content();
        rewrite(&JournalServiceHelper::parseXMLMissedCallList, &Helper::createXMLMissedCallItemBody);
        rewrite(&JournalServiceHelper::parseXMLDialledCallList, &Helper::createXMLDialledCallItemBody);
        rewrite(&JournalServiceHelper::parseXMLReceivedCallList, &Helper::createXMLReceivedCallItemBody);
        rewrite(&JournalServiceHelper::parseXMLForwardedCallList, &Helper::createXMLForwardedCallItemBody);
        rewrite(&JournalServiceHelper::parseXMLCallBackList, &Helper::createXMLCallBackItemBody);
        require(content() == before, "an item that was read and written again is another one");
    }

private:
    std::string process(const std::string& request) {
        std::string response = m_access.processRequest(request);
        require(!response.empty() && utf8::isXmlText(response), "a response is empty or no XML text");
        require(m_access.healthy(), "a request makes the database unhealthy");
        return response;
    }

    template <typename Item>
    void rewrite(bool (*parse)(const std::string&, std::deque<Item>&),
                 std::string (*body)(const Item&, const std::string&)) {
        const char* const table = ListTraits<Item>::kTable;
        std::deque<Item> items;
        require(parse(process(Helper::readCallList(table)), items), "a list of the database cannot be read");
        for (const Item& item : items) {
            const std::string request = Helper::addXMLHeaderFooter(
                Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::WRITEREQUEST) +
                    Helper::createXMLElement(Helper::ENTRY, body(item, Helper::WRITEREQUEST)),
                table);
            require(process(request) != Helper::FAILED, "an item that was read cannot be written");
        }
    }

    /// All lists and settings.
    std::string content() {
        std::string all = process(JournalServiceHelper::readSettings());
        for (const char* const table : {Helper::DAS_CALLLOGMISSEDCALLS, Helper::DAS_CALLLOGDIALLEDCALLS,
                                        Helper::DAS_CALLLOGRECEIVEDCALLS, Helper::DAS_CALLLOGFORWARDEDCALLS,
                                        Helper::DAS_CALLLOGCALLBACKS}) {
            all += process(Helper::readCallList(table));
        }
        return all;
    }

    host::DigitAnalysis m_digits{"DE", {}};
    host::SqliteDataAccess m_access;
};

std::vector<std::string> requestsIn(std::string_view text) {
    std::vector<std::string> requests;
    while (requests.size() < kMaxRequests) {
        const std::size_t end = std::min(text.find('\f'), text.size());
        requests.emplace_back(text.substr(0, end));
        if (end == text.size()) {
            break;
        }
        text.remove_prefix(end + 1);
    }
    return requests;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::ScratchDatabase scratch([](host::Database& /*database*/) {});
    static std::unique_ptr<Access> access;
    if (access == nullptr || scratch.isChanged()) {
        access.reset();
        access = std::make_unique<Access>(scratch.renew());
    }
    for (const std::string& request : requestsIn({reinterpret_cast<const char*>(data), size})) {
        access->handle(request);
    }
    if (scratch.isChanged()) {
        access->checkRewritten();
    }
    return 0;
}
