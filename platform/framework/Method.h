#pragma once

#include <string>
#include <utility>
#include <vector>

/// One call or response of a text protocol: a name, a kind, its sender, and named string parameters. A plain
/// value without synchronisation.
class Method {
public:
    enum class Kind { eRequest, eResponse, eNotification };
    enum class ParameterKind { eIn, eOut };

    struct StringParameter {
        std::string name;
        std::string value;
        ParameterKind kind = ParameterKind::eIn;
    };

    Method() = default;
    Method(std::string name, Kind kind, std::string source)
        : m_name(std::move(name)), m_kind(kind), m_source(std::move(source)) {}

    [[nodiscard]] const std::string& getName() const noexcept { return m_name; }
    [[nodiscard]] Kind getKind() const noexcept { return m_kind; }
    /// The sender: the client's or service's name.
    [[nodiscard]] const std::string& getSource() const noexcept { return m_source; }

    /// Parameters keep their order; a name may occur more than once.
    void addStringParameter(std::string name, std::string value, ParameterKind kind) {
        m_parameters.push_back({std::move(name), std::move(value), kind});
    }
    [[nodiscard]] const std::vector<StringParameter>& getStringParameters() const noexcept {
        return m_parameters;
    }

private:
    std::string m_name;
    Kind m_kind = Kind::eRequest;
    std::string m_source;
    std::vector<StringParameter> m_parameters;
};
