#include <qrencode.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "host/presentation/PlainText.h"
#include "host/remote/RemoteError.h"

namespace calljournal {
namespace {

/// The modules of light colour that readers want around the code.
constexpr int kMargin = 2;

/// A QR code for a terminal with a dark background: light modules are blocks, and one text line has two rows.
std::string qrText(const std::string& text) {
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(
        QRcode_encodeString8bit(text.c_str(), 0, QR_ECLEVEL_L), &QRcode_free);
    if (!code) {
        throw host::RemoteError("the link is too long for a QR code");
    }
    const int width = code->width;
    const auto isLight = [&code, width](int row, int column) {
        const bool isInside = row >= 0 && row < width && column >= 0 && column < width;
        return !isInside || (code->data[row * width + column] & 1U) == 0;
    };
    std::string lines;
    for (int row = -kMargin; row < width + kMargin; row += 2) {
        for (int column = -kMargin; column < width + kMargin; ++column) {
            const bool upper = isLight(row, column);
            const bool lower = isLight(row + 1, column);
            lines += upper ? (lower ? "█" : "▀") : (lower ? "▄" : " ");
        }
        lines += "\n";
    }
    return lines;
}

class OpenCommand final : public Command {
public:
    explicit OpenCommand(CLI::App& app) {
        app.add_flag("--no-code", m_noCode, "print the link only, without the QR code");
    }

    int run(const CommonOptions& common) override {
        const host::ApiServer server = common.server();
        const std::string link = server.url + "/" + (server.token.empty() ? "" : "?token=" + server.token);
        std::cout << host::printable(link) << "\n";
        if (!m_noCode) {
            std::cout << qrText(link);
        }
        return statusOfOutput();
    }

private:
    bool m_noCode = false;
};

}  // namespace

std::unique_ptr<Command> makeOpenCommand(CLI::App& app) {
    return std::make_unique<OpenCommand>(app);
}

}  // namespace calljournal
