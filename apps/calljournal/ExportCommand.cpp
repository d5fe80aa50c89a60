#include <CLI/CLI.hpp>
#include <iostream>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/ListOptions.h"
#include "apps/calljournal/ListResponse.h"
#include "host/remote/RemoteClient.h"

namespace calljournal {
namespace {

class ExportCommand final : public Command {
public:
    explicit ExportCommand(CLI::App& app) {
        addListOption(app, m_list);
        addFormatOption(app, m_format, {"csv", "json"}, "csv, a line for each call, or json, one object");
    }

    int run(const CommonOptions& common) override {
        host::RemoteClient client(common.dataDirectory());
        const ListResponse response = fetchList(client, listNamed(m_list).value());
        std::cout << (m_format == "csv" ? response.csv : response.json + "\n") << std::flush;
        reportUnloaded(client, listNamed(m_list).value());
        return std::cout.good() ? eDone : eFailed;
    }

private:
    std::string m_list;
    std::string m_format;
};

}  // namespace

std::unique_ptr<Command> makeExportCommand(CLI::App& app) {
    return std::make_unique<ExportCommand>(app);
}

}  // namespace calljournal
