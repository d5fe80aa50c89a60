#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

/// The files of the page. All are read at start, so a request cannot reach any other file. They contain no
/// secrets and need no token. A file "NAME.gz" is the compressed form of the file NAME. Thread-safe after
/// construction.
class PageFiles {
public:
    /// Reads every file in `directory` and its subdirectories. Without that directory the start page is a
    /// text with the API's address.
    explicit PageFiles(const std::filesystem::path& directory);

    /// The file in the form that the client accepts, with an ETag; status 304 if the client has it. "/" is
    /// "index.html". std::nullopt if there is no such file.
    [[nodiscard]] std::optional<HttpResponse> find(const HttpRequest& request) const;

private:
    struct Form {
        HttpResponse response{};
        /// With its quotes.
        std::string tag{};
    };
    struct File {
        Form plain{};
        std::optional<Form> compressed{};
    };
    static File readFile(const std::filesystem::path& path, const std::string& name);

    std::map<std::string, File> m_files;
};

}  // namespace host
