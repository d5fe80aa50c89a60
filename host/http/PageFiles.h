#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"

namespace host {

/// The files of the page, all read at start: a request can name one of them and nothing else on the machine. They hold
/// nothing secret and need no token.
///
/// Threads: any, once made.
class PageFiles {
public:
    /// Takes every file below `directory`; without that directory the start page is a text that says where the API is.
    explicit PageFiles(const std::filesystem::path& directory);

    /// Null when there is no such file. "/" is "index.html".
    [[nodiscard]] const HttpResponse* find(const HttpRequest& request) const;

private:
    std::map<std::string, HttpResponse> m_files;
};

}  // namespace host
