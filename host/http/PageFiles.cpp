#include "host/http/PageFiles.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr const char* kStart = "index.html";

const char* typeOf(const std::string& extension) {
    static constexpr std::array<std::pair<const char*, const char*>, 9> kTypes{
        {{".html", "text/html; charset=utf-8"},
         {".js", "text/javascript; charset=utf-8"},
         {".css", "text/css; charset=utf-8"},
         {".json", "application/json"},
         {".svg", "image/svg+xml"},
         {".png", "image/png"},
         {".ico", "image/x-icon"},
         {".woff2", "font/woff2"},
         {".webmanifest", "application/manifest+json"}}};
    const auto* const found = std::find_if(
        kTypes.begin(), kTypes.end(), [&extension](const auto& each) { return extension == each.first; });
    return found == kTypes.end() ? "application/octet-stream" : found->second;
}

HttpResponse readFile(const std::filesystem::path& file, const std::string& name) {
    HttpResponse response;
    response.contentType = typeOf(file.extension().string());
    std::ifstream stream(file, std::ios::binary);
    response.body.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    // The name of a built asset changes with its content.
    const bool lasting = name.compare(0, 7, "assets/") == 0;
    response.headers = {{"Cache-Control", lasting ? "public, max-age=31536000, immutable" : "no-cache"}};
    return response;
}

HttpResponse startText() {
    HttpResponse response;
    response.contentType = "text/plain; charset=utf-8";
    response.body =
        "The page is not built; ./run in the sources fetches what it needs and builds it.\n"
        "calljournal serves its API here; /api/v1/openapi.json describes it.\n";
    return response;
}

}  // namespace

PageFiles::PageFiles(const std::filesystem::path& directory) {
    std::error_code error;
    for (std::filesystem::recursive_directory_iterator each(directory, error), end; !error && each != end;
         each.increment(error)) {
        if (each->is_regular_file(error)) {
            const std::string name = each->path().lexically_relative(directory).generic_string();
            m_files.emplace(name, readFile(each->path(), name));
        }
    }
    if (m_files.try_emplace(kStart, startText()).second) {
        logAppUni("HTTP", __FILE_NAME__, 3, __LINE__,
                  "the page is not built: there are no files in %s; ./run builds it",
                  directory.lexically_normal().c_str());
    }
}

const HttpResponse* PageFiles::find(const HttpRequest& request) const {
    std::string name;
    for (const std::string& segment : request.path) {
        name += (name.empty() ? "" : "/") + segment;
    }
    const auto found = m_files.find(name.empty() ? kStart : name);
    return found == m_files.end() ? nullptr : &found->second;
}

}  // namespace host
