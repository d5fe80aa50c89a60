#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <shared_mutex>
#include <string>
#include <vector>

#include "host/access/Access.h"

namespace host {

class Database;

/// A named token, without its secret.
struct NamedToken {
    std::int64_t id = 0;
    std::string name;
    Scope scope = Scope::eRead;
    /// The only line that it is valid for; empty for all.
    std::string line;
    std::chrono::sys_seconds created;
    /// std::nullopt: it does not expire.
    std::optional<std::chrono::sys_seconds> expires;
};

/// The named tokens of the HTTP API. The database has the SHA-256 of each secret, not the secret. A secret
/// has 256 random bits, so that neither salt nor a slow hash is needed.
///
/// Thread-safe. Reads the tokens once, and looks them up in memory.
class AccessTokens {
public:
    /// Borrows the database, which outlives this object. Without a database that can be read there are no
    /// tokens until `load` succeeds.
    explicit AccessTokens(Database& database) : m_database(database) { static_cast<void>(load()); }

    /// Reads the tokens of the database again; false if it fails.
    bool load();

    /// std::nullopt for a secret of no token, and of one that has expired.
    [[nodiscard]] std::optional<Access> find(const std::string& secret) const;
    /// False once the token is revoked or has expired.
    [[nodiscard]] bool isValid(std::int64_t id) const;

    struct Created {
        NamedToken token;
        /// 64 hexadecimal digits. It cannot be read again.
        std::string secret;
    };
    enum class Failure { eNameTaken, eDatabase };
    /// Stores a new token; `token.id` and `token.created` are set. std::nullopt and `failure` if it fails.
    [[nodiscard]] std::optional<Created> create(NamedToken token, Failure& failure);
    /// In the order in which they were created, those that have expired too.
    [[nodiscard]] std::vector<NamedToken> list() const;
    /// False if there is no such token; std::nullopt if the database fails.
    [[nodiscard]] std::optional<bool> revoke(std::int64_t id);

private:
    [[nodiscard]] static bool hasExpired(const NamedToken& token);

    Database& m_database;
    mutable std::shared_mutex m_mutex;
    // Guarded by m_mutex.
    /// By the hash of the secret.
    std::map<std::string, NamedToken> m_tokens;
};

/// 256 random bits as 64 hexadecimal digits. Throws `std::system_error`.
[[nodiscard]] std::string newSecret();

}  // namespace host
