#include "host/http/PageFiles.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "host/http/messages/ContentCoding.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr const char* kStart = "index.html";
constexpr const char* kPacked = ".gz";

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

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// A hash of the content in quotes (FNV-1a).
std::string tagOf(const std::string& content) {
    std::uint64_t hash = 14'695'981'039'346'656'037U;
    for (const char each : content) {
        hash = (hash ^ static_cast<unsigned char>(each)) * 1'099'511'628'211U;
    }
    return '"' + std::to_string(hash) + '"';
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

PageFiles::File PageFiles::readFile(const std::filesystem::path& path, const std::string& name) {
    File file;
    HttpResponse& plain = file.plain.response;
    plain.contentType = typeOf(path.extension().string());
    plain.body = contentOf(path);
    file.plain.tag = tagOf(plain.body);
    // The name of a built asset changes with its content.
    const bool lasting = name.compare(0, 7, "assets/") == 0;
    plain.headers = {{"Cache-Control", lasting ? "public, max-age=31536000, immutable" : "no-cache"}};
    std::error_code error;
    std::filesystem::path packed = path;
    if (std::filesystem::is_regular_file(packed += kPacked, error)) {
        plain.headers.emplace_back("Vary", "Accept-Encoding");
        file.compressed = file.plain;
        file.compressed->response.body = contentOf(packed);
        file.compressed->response.headers.emplace_back("Content-Encoding", "gzip");
        file.compressed->tag = tagOf(file.compressed->response.body);
        file.compressed->response.headers.emplace_back("ETag", file.compressed->tag);
    }
    plain.headers.emplace_back("ETag", file.plain.tag);
    return file;
}

PageFiles::PageFiles(const std::filesystem::path& directory) {
    std::error_code error;
    for (std::filesystem::recursive_directory_iterator each(directory, error), end; !error && each != end;
         each.increment(error)) {
        if (each->is_regular_file(error) && each->path().extension() != kPacked) {
            const std::string name = each->path().lexically_relative(directory).generic_string();
            m_files.emplace(name, readFile(each->path(), name));
        }
    }
    if (m_files.try_emplace(kStart, File{{startText(), {}}, {}}).second) {
        logAppUni("HTTP", __FILE_NAME__, 3, __LINE__,
                  "the page is not built: there are no files in %s; ./run builds it",
                  directory.lexically_normal().c_str());
    }
}

std::optional<HttpResponse> PageFiles::find(const HttpRequest& request) const {
    std::string name;
    for (const std::string& segment : request.path) {
        name += (name.empty() ? "" : "/") + segment;
    }
    const auto found = m_files.find(name.empty() ? kStart : name);
    if (found == m_files.end()) {
        return std::nullopt;
    }
    const File& file = found->second;
    const Form& form = file.compressed && acceptsGzip(request) ? *file.compressed : file.plain;
    HttpResponse response = form.response;
    if (!form.tag.empty() && hasEntity(request, form.tag)) {
        response.status = 304;
    }
    return response;
}

}  // namespace host
