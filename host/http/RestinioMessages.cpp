#include "host/http/RestinioMessages.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "platform/logging/Logging.h"

namespace host {
namespace {

std::string lowered(std::string text) {
    for (char& letter : text) {
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    }
    return text;
}

const char* reasonOf(int status) {
    switch (status) {
        case 200: return "OK";
        case 201: return "Created";
        case 202: return "Accepted";
        case 204: return "No Content";
        case 303: return "See Other";
        case 304: return "Not Modified";
        case 400: return "Bad Request";
        case 401: return "Unauthorized";
        case 403: return "Forbidden";
        case 404: return "Not Found";
        case 405: return "Method Not Allowed";
        case 409: return "Conflict";
        case 413: return "Content Too Large";
        case 415: return "Unsupported Media Type";
        case 422: return "Unprocessable Content";
        case 501: return "Not Implemented";
        case 503: return "Service Unavailable";
        default: return "Internal Server Error";
    }
}

template <typename Output>
auto builderFor(restinio::request_t& request, const HttpResponse& response) {
    auto builder = request.create_response<Output>(restinio::http_status_line_t(
        restinio::http_status_code_t(static_cast<std::uint16_t>(response.status)),
        reasonOf(response.status)));
    if (request.header().connection() == restinio::http_connection_header_t::upgrade) {
        builder.connection_close();
    }
    builder.append_header_date_field();
    if (!response.contentType.empty()) {
        builder.append_header("Content-Type", response.contentType);
    }
    for (const auto& [name, value] : response.headers) {
        builder.append_header(name, value);
    }
    return builder;
}

/// Reports the result of a write once: false if the library drops the callback without calling it.
class WriteResult {
public:
    explicit WriteResult(StreamSink::Done done) : m_done(std::move(done)) {}
    ~WriteResult() { report(false); }
    WriteResult(const WriteResult&) = delete;
    WriteResult& operator=(const WriteResult&) = delete;

    void report(bool written) {
        if (const StreamSink::Done done = std::exchange(m_done, nullptr)) {
            done(written);
        }
    }

private:
    StreamSink::Done m_done;
};

class ChunkSink final : public StreamSink {
public:
    using Builder = restinio::response_builder_t<restinio::chunked_output_t>;

    explicit ChunkSink(Builder builder) : m_builder(std::move(builder)) {}
    ~ChunkSink() override {
        try {
            m_builder.done();
        } catch (const std::exception& error) {
            logAppUni("HTTP", __FILE_NAME__, 3, __LINE__, "ending a stream failed: %s", error.what());
        }
    }

    void write(std::string text, Done done) override {
        m_builder.append_chunk(std::move(text));
        m_builder.flush([written = std::make_shared<WriteResult>(std::move(done))](
                            const asio::error_code& error) { written->report(!error); });
    }

private:
    Builder m_builder;
};

}  // namespace

HttpRequest requestOf(const restinio::request_t& from) {
    HttpRequest request = requestOf(from.header());
    request.body = from.body();
    return request;
}

HttpRequest requestOf(const restinio::http_request_header_t& header) {
    HttpRequest request;
    request.method = header.method().c_str();
    request.target = header.request_target();
    header.for_each_field([&request](const auto& field) {
        const auto [known, isFirst] = request.headers.try_emplace(lowered(field.name()), field.value());
        if (!isFirst) {
            known->second += ", " + field.value();
        }
    });
    return request;
}

void send(restinio::request_t& request, HttpResponse response) {
    if (response.stream) {
        auto builder = builderFor<restinio::chunked_output_t>(request, response);
        response.stream->begin(std::make_unique<ChunkSink>(std::move(builder)));
    } else if (response.status == 304 || request.header().method() == restinio::http_method_head()) {
        auto builder = builderFor<restinio::user_controlled_output_t>(request, response);
        builder.set_content_length(response.body.size()).done();
    } else {
        auto builder = builderFor<restinio::restinio_controlled_output_t>(request, response);
        builder.set_body(std::move(response.body)).done();
    }
}

}  // namespace host
