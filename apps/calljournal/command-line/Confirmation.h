#pragma once

#include <string>

namespace CLI {
class App;
}

namespace calljournal {

/// The question before what cannot be undone, and --yes, which suppresses it. One thread.
///
/// Requires: the object outlives the `app` that its option is added to.
class Confirmation {
public:
    Confirmation() = default;
    Confirmation(const Confirmation&) = delete;
    Confirmation& operator=(const Confirmation&) = delete;

    void addTo(CLI::App& app);

    /// Prints `question` and reads the reply. Returns true for "y" or "yes", and without a question with
    /// --yes or if the input or the output is no terminal: a script has decided already.
    [[nodiscard]] bool isGiven(const std::string& question) const;

    /// Prints that no change is made; returns the exit status.
    [[nodiscard]] static int refused();

private:
    bool m_yes = false;
};

}  // namespace calljournal
