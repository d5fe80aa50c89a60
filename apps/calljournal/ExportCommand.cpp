#include <CLI/CLI.hpp>
#include <iostream>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/ListClient.h"
#include "apps/calljournal/ListOptions.h"
#include "host/api-client/ApiClient.h"
#include "host/presentation/ItemCsv.h"
#include "host/presentation/ItemJson.h"

namespace calljournal {
namespace {

class ExportCommand final : public Command {
public:
    explicit ExportCommand(CLI::App& app) {
        addListOption(app, m_list);
        addFormatOption(app, m_format, {"csv", "json"}, "csv, a line for each call, or json, one object");
    }

    int run(const CommonOptions& common) override {
        const ListName list = listNamed(m_list).value();
        host::ApiClient client(common.dataDirectory());
        const auto response = fetchList(client, list);
        std::cout << (m_format == "csv" ? host::csvText(list, response["items"])
                                        : host::jsonText(response) + "\n")
                  << std::flush;
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
