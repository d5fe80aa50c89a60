#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

/// The files of the page. All are read at start, so a request cannot reach any other file. They contain no
/// secrets and need no token. Thread-safe after construction.
class PageFiles {
public:
    /// Reads every file in `directory` and its subdirectories. Without that directory the start page is a
    /// text with the API's address.
    explicit PageFiles(const std::filesystem::path& directory);

    /// nullptr if there is no such file. "/" is "index.html".
    [[nodiscard]] const HttpResponse* find(const HttpRequest& request) const;

private:
    std::map<std::string, HttpResponse> m_files;
};

}  // namespace host
