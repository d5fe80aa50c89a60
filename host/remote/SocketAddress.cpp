#include "host/remote/SocketAddress.h"

#include <cstring>
#include <string>

#include "host/remote/RemoteError.h"

namespace host {

sockaddr_un socketAddressIn(const std::filesystem::path& dataDirectory) {
    const std::string path = (dataDirectory / kSocketName).string();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        throw RemoteError("the path of the socket is longer than the system allows (" +
                          std::to_string(sizeof address.sun_path - 1) + " bytes): " + path +
                          "; choose a shorter directory with --data");
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

}  // namespace host
