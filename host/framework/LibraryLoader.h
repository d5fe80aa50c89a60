#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "platform/framework/Invoker.h"
#include "platform/framework/Proxy.h"
#include "platform/framework/Service.h"

namespace host {

/// A service library cannot be loaded, or lacks what a service library must have. `what()` names the file and says
/// what is wrong, ready to be shown.
class LibraryError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A loaded service library: the factories that it exports, as C functions without arguments that return a new
/// object as `void*`. Everything undefined in the library is resolved when it is loaded, so a program that lacks
/// the logger or another function of the platform hears of it at once and not in the middle of a call.
///
/// Threads: any thread may call. Lifetime: the code of all objects made here goes away with the loader, so it is
/// destroyed last.
class LibraryLoader {
public:
    /// The file name of the journal.
    static constexpr const char* kJournalLibrary = "libjournalservice.so";

    /// Where `fileName` is for a program in the directory `programDirectory`: beside it, or in `lib` beside its
    /// directory, which is how both a build directory and an installed prefix are arranged. Throws `LibraryError` that
    /// names both places.
    [[nodiscard]] static std::filesystem::path locate(const std::string& fileName,
                                                      const std::filesystem::path& programDirectory);
    /// The directory of the running program.
    [[nodiscard]] static std::filesystem::path programDirectory();

    /// Loads the library. Throws `LibraryError`.
    explicit LibraryLoader(const std::filesystem::path& path);
    ~LibraryLoader();
    LibraryLoader(const LibraryLoader&) = delete;
    LibraryLoader& operator=(const LibraryLoader&) = delete;

    // Each calls the factory of the same name. `LibraryError` when the library does not export it or it gave null.
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
