#pragma once

#include <sys/types.h>

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>

namespace host {

/// The path of the installed telephone. Throws `std::runtime_error` that names the package if there is none.
[[nodiscard]] std::filesystem::path findBaresip();

/// A telephone as a child process. It ends with the thread that started it, and is never left as a zombie.
/// Call from the thread of the io_context only.
class PhoneProcess {
public:
    /// None is called after the destructor.
    struct Handlers {
        /// A text line of its output.
        std::function<void(const std::string&)> printed;
        /// Called once when it has ended by itself, with its last words.
        std::function<void(const std::string&)> ended;
    };

    /// Starts the telephone with the configuration in `directory`. Throws `std::system_error`.
    PhoneProcess(asio::io_context& io, const std::filesystem::path& program,
                 const std::filesystem::path& directory, Handlers handlers);
    /// Ends the telephone, which hangs up first. Waits for it, up to a second.
    ~PhoneProcess();
    PhoneProcess(const PhoneProcess&) = delete;
    PhoneProcess& operator=(const PhoneProcess&) = delete;

    [[nodiscard]] pid_t id() const noexcept { return m_id; }

private:
    struct Output;

    pid_t m_id = -1;
    /// Shared with the read in progress.
    std::shared_ptr<Output> m_output;
};

}  // namespace host
