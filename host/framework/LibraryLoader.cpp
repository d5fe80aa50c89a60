#include "host/framework/LibraryLoader.h"

#include <dlfcn.h>

#include <array>
#include <system_error>

namespace host {

namespace {

std::string lastLoaderError() {
    const char* text = dlerror();
    return text != nullptr ? text : "no reason given";
}

}  // namespace

std::filesystem::path LibraryLoader::locate(const std::string& fileName,
                                            const std::filesystem::path& programDirectory) {
    // In a build, and where `cmake --install` puts it.
    const std::filesystem::path prefix = programDirectory.parent_path();
    const std::filesystem::path installed = prefix / JOURNAL_LIBRARY_DIRECTORY;
    const std::array places{programDirectory / fileName, prefix / "lib" / fileName, installed / fileName,
                            installed / "calljournal" / fileName};
    for (const std::filesystem::path& place : places) {
        std::error_code ignored;
        if (std::filesystem::exists(place, ignored)) {
            return place;
        }
    }
    throw LibraryError("cannot find " + fileName + ": it is not at " + places[0].string() + ", " +
                       places[1].string() + ", " + places[2].string() + " nor " + places[3].string());
}

std::filesystem::path LibraryLoader::programDirectory() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

LibraryLoader::LibraryLoader(const std::filesystem::path& path)
    : m_path(path.string()), m_handle(dlopen(m_path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (m_handle == nullptr) {
        throw LibraryError("cannot load the service library " + m_path + ": " + lastLoaderError());
    }
}

bool LibraryLoader::load(const std::filesystem::path& path) noexcept {
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) != nullptr;
}

LibraryLoader::~LibraryLoader() {
    dlclose(m_handle);
}

std::unique_ptr<Service> LibraryLoader::createJournalService() const {
    return std::unique_ptr<Service>(static_cast<Service*>(callFactory("createJournalService")));
}

std::unique_ptr<Invoker> LibraryLoader::createJournalServiceInvoker() const {
    return std::unique_ptr<Invoker>(static_cast<Invoker*>(callFactory("createJournalServiceInvoker")));
}

std::unique_ptr<Proxy> LibraryLoader::createJournalServiceObserverProxy() const {
    return std::unique_ptr<Proxy>(static_cast<Proxy*>(callFactory("createJournalServiceObserverProxy")));
}

std::unique_ptr<Invoker> LibraryLoader::createContactGetterInvoker() const {
    return std::unique_ptr<Invoker>(static_cast<Invoker*>(callFactory("createContactGetterInvoker")));
}

void* LibraryLoader::callFactory(const char* name) const {
    void* const symbol = dlsym(m_handle, name);
    if (symbol == nullptr) {
        throw LibraryError("the service library " + m_path + " does not export " + name + ": " +
                           lastLoaderError());
    }
    void* const object = reinterpret_cast<void* (*)()>(symbol)();
    if (object == nullptr) {
        throw LibraryError("the service library " + m_path + " could not create a service: " + name +
                           " returned null");
    }
    return object;
}

}  // namespace host
