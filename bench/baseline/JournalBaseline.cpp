// The least work that a call journal does, composed of the same libraries, as the measure for the product:
//   journal_baseline --data DIR --switch 127.0.0.1:PORT
//
// For each call that it follows over TCP: parses its events with pugixml, merges one entry of a list in
// memory, builds and parses one request document, writes it in one durable SQLite transaction, and sends each
// observer four notifications. No rules, no contacts, no settings, no log; received calls only. bench/load
// drives it as it drives the product.

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "bench/baseline/BaselineLink.h"
#include "bench/baseline/BaselineList.h"
#include "bench/baseline/BaselineStore.h"
#include "bench/load/SystemCall.h"
#include "host/framework/FileDescriptor.h"
#include "host/remote/RemoteFrame.h"
#include "host/remote/SocketAddress.h"

namespace {

using Kind = host::RemoteFrame::Kind;

constexpr int kNotifications = 4;

class Baseline {
public:
    Baseline(const std::filesystem::path& data, const std::string& switchAddress)
        : m_store(data / "baseline.db"),
          m_listener(bench::checked(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")),
          m_link(switchAddress) {
        const sockaddr_un address = host::socketAddressIn(data);
        bench::checked(::bind(m_listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address),
                       "bind");
        bench::checked(::listen(m_listener.get(), 128), "listen");
    }

    void run() {
        for (;;) {
            std::array<pollfd, 2> waits{{{m_link.descriptor(), POLLIN, 0}, {m_listener.get(), POLLIN, 0}}};
            ::poll(waits.data(), waits.size(), -1);
            if (waits[1].revents != 0) {
                addObserver();
            }
            if (waits[0].revents != 0) {
                if (!m_link.receive()) {
                    return;
                }
                while (auto call = m_link.nextEndedCall()) {
                    file(std::move(*call));
                }
            }
        }
    }

private:
    /// A client that sends any request becomes an observer.
    void addObserver() {
        host::FileDescriptor client(bench::checked(::accept(m_listener.get(), nullptr, nullptr), "accept"));
        std::array<char, 4096> request{};
        if (::recv(client.get(), request.data(), request.size(), 0) > 0) {
            send(client, host::RemoteFrame::encode(Kind::eResponse, 1, "true"));
            m_observers.push_back(std::move(client));
        }
    }

    void file(bench::BaselineLink::EndedCall call) {
        const auto change = m_list.merge(std::move(call.number), std::move(call.name), std::move(call.call));
        const std::string request = bench::requestFor(change.entry, change.evicted);
        m_store.carryOut(request);
        const std::string notification = host::RemoteFrame::encode(Kind::eNotification, 0, request);
        for (const host::FileDescriptor& observer : m_observers) {
            for (int number = 0; number < kNotifications; ++number) {
                send(observer, notification);
            }
        }
    }

    static void send(const host::FileDescriptor& client, const std::string& bytes) {
        // An observer that has disconnected is no error.
        static_cast<void>(::send(client.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL));
    }

    bench::BaselineStore m_store;
    bench::BaselineList m_list;
    host::FileDescriptor m_listener;
    bench::BaselineLink m_link;
    std::vector<host::FileDescriptor> m_observers;
};

}  // namespace

int main(int count, char** arguments) {
    CLI::App app("The least work of a call journal, as a measure.");
    std::filesystem::path data;
    std::string switchAddress;
    app.add_option("--data", data, "the directory of the database and the socket")->required();
    app.add_option("--switch", switchAddress, "the address of the switch")->required();
    CLI11_PARSE(app, count, arguments);
    try {
        Baseline(data, switchAddress).run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "journal_baseline: %s\n", error.what());
        return 1;
    }
    return 0;
}
