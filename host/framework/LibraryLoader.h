#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "platform/framework/Invoker.h"
#include "platform/framework/Proxy.h"
#include "platform/framework/Service.h"

namespace host {

/// A service library cannot be loaded or does not export a required function. `what()` is a message for the
/// user and names the file.
class LibraryError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A loaded service library and its factories: exported C functions without arguments that return a new
/// object as `void*`. Loading resolves all undefined symbols, so a program that lacks the logger or another
/// platform function fails at start and not during a call.
///
/// Thread-safe. Lifetime: outlives all objects that it creates, because their code is unloaded with it.
class LibraryLoader {
public:
    /// The file name of the journal.
    static constexpr const char* kJournalLibrary = "libjournalservice.so";

    /// Returns the path of `fileName` for a program in `programDirectory`: this directory, the directory
    /// `lib` beside it, as in a build directory, or the directory of libraries of an installed prefix
    /// (`lib/x86_64-linux-gnu`). Throws a `LibraryError` that names these places.
    [[nodiscard]] static std::filesystem::path locate(const std::string& fileName,
                                                      const std::filesystem::path& programDirectory);
    /// Returns the directory of the running program.
    [[nodiscard]] static std::filesystem::path programDirectory();

    /// Loads the library. Throws `LibraryError`.
    explicit LibraryLoader(const std::filesystem::path& path);
    ~LibraryLoader();
    /// Loads the library, so that the next object has it; it stays loaded. Returns false if that fails.
    static bool load(const std::filesystem::path& path) noexcept;
    LibraryLoader(const LibraryLoader&) = delete;
    LibraryLoader& operator=(const LibraryLoader&) = delete;

    // Each calls the factory of the same name. Throws `LibraryError` if the library does not export it or it
    // returns null.
    [[nodiscard]] std::unique_ptr<Service> createJournalService() const;
    [[nodiscard]] std::unique_ptr<Invoker> createJournalServiceInvoker() const;
    [[nodiscard]] std::unique_ptr<Proxy> createJournalServiceObserverProxy() const;
    [[nodiscard]] std::unique_ptr<Invoker> createContactGetterInvoker() const;

private:
    [[nodiscard]] void* callFactory(const char* name) const;

    const std::string m_path;
    void* m_handle = nullptr;
};

}  // namespace host
