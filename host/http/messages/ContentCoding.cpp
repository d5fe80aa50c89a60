#include "host/http/messages/ContentCoding.h"

#include <zlib.h>

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kShortBody = 1024;
/// 15 bits of window; 16 more for the gzip format.
constexpr int kGzipFormat = 15 + 16;
constexpr int kMemoryLevel = 8;

std::string_view stripped(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

/// Calls `use` with each element of a list with commas until it returns true; returns whether one did.
template <typename Use>
bool anyOf(std::string_view list, Use&& use) {
    while (!list.empty()) {
        const std::string_view each = list.substr(0, list.find(','));
        list.remove_prefix(std::min(list.size(), each.size() + 1));
        if (use(stripped(each))) {
            return true;
        }
    }
    return false;
}

/// False for "q=0", "q=0.000".
bool isWanted(std::string_view parameters) {
    const std::size_t weight = parameters.find("q=");
    return weight == std::string_view::npos ||
           stripped(parameters.substr(weight + 2)).find_first_of("123456789") != std::string_view::npos;
}

}  // namespace

bool acceptsGzip(const HttpRequest& request) {
    return anyOf(request.header("accept-encoding"), [](std::string_view each) {
        const std::size_t end = std::min(each.find(';'), each.size());
        return stripped(each.substr(0, end)) == "gzip" && isWanted(each.substr(end));
    });
}

std::string gzipped(const std::string& text) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, kGzipFormat, kMemoryLevel, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        throw std::bad_alloc();
    }
    std::string packed;
    try {
        packed.resize(deflateBound(&stream, text.size()));
    } catch (...) {
        deflateEnd(&stream);
        throw;
    }
    // zlib does not write to its input.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);  // ends, because the output has its greatest length
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

void compressJson(const HttpRequest& request, HttpResponse& response) {
    if (response.contentType != "application/json" || response.body.size() <= kShortBody) {
        return;
    }
    response.headers.emplace_back("Vary", "Accept-Encoding");
    if (acceptsGzip(request)) {
        response.body = gzipped(response.body);
        response.headers.emplace_back("Content-Encoding", "gzip");
    }
}

bool hasEntity(const HttpRequest& request, const std::string& tag) {
    return anyOf(request.header("if-none-match"), [&tag](std::string_view each) {
        each.remove_prefix(each.starts_with("W/") ? 2 : 0);
        return each == tag || each == "*";
    });
}

}  // namespace host
