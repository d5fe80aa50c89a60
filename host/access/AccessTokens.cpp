#include "host/access/AccessTokens.h"

#include <openssl/evp.h>
#include <openssl/sha.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <mutex>
#include <new>
#include <system_error>
#include <utility>

#include "host/database/Database.h"

namespace host {
namespace {

using std::chrono::sys_seconds;

constexpr std::array<std::pair<Scope, std::string_view>, 4> kScopes{{{Scope::eMetrics, "metrics"},
                                                                     {Scope::eRead, "read"},
                                                                     {Scope::eWrite, "write"},
                                                                     {Scope::eAdmin, "admin"}}};

std::string hexadecimal(const unsigned char* bytes, std::size_t count) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * count);
    for (std::size_t at = 0; at < count; ++at) {
        text += {kDigits[bytes[at] / 16], kDigits[bytes[at] % 16]};
    }
    return text;
}

std::string hashOf(const std::string& secret) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> hash{};
    if (EVP_Digest(secret.data(), secret.size(), hash.data(), nullptr, EVP_sha256(), nullptr) != 1) {
        throw std::bad_alloc();
    }
    return hexadecimal(hash.data(), hash.size());
}

sys_seconds now() {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

}  // namespace

std::string_view wordOf(Scope scope) noexcept {
    const auto* const found = std::find_if(kScopes.begin(), kScopes.end(),
                                           [scope](const auto& each) { return each.first == scope; });
    return found != kScopes.end() ? found->second : std::string_view();
}

std::optional<Scope> scopeOf(std::string_view word) noexcept {
    const auto* const found = std::find_if(kScopes.begin(), kScopes.end(),
                                           [word](const auto& each) { return each.second == word; });
    return found != kScopes.end() ? std::optional(found->first) : std::nullopt;
}

std::string newSecret() {
    std::array<unsigned char, 32> bytes{};
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw std::system_error(errno, std::generic_category(), "no random number");
    }
    return hexadecimal(bytes.data(), bytes.size());
}

bool AccessTokens::load() {
    std::map<std::string, NamedToken> tokens;
    const bool done = m_database.readAside("reading the tokens", [&](Database::Session& session) {
        tokens.clear();
        Query query = session.query("SELECT hash, id, name, scope, line, created, expires FROM access_token");
        while (query.next()) {
            const std::string hash = query.text();
            NamedToken token;
            token.id = query.number();
            token.name = query.text();
            const std::string scope = query.text();
            token.line = query.text();
            token.created = sys_seconds(std::chrono::seconds(query.number()));
            if (const auto expires = query.optionalNumber()) {
                token.expires = sys_seconds(std::chrono::seconds(*expires));
            }
            // A token whose scope a newer version has defined grants no access.
            token.scope = scopeOf(scope).value_or(Scope::eNone);
            tokens.emplace(hash, std::move(token));
        }
    });
    if (done) {
        const std::unique_lock lock(m_mutex);
        m_tokens.swap(tokens);
    }
    return done;
}

std::optional<Access> AccessTokens::find(const std::string& secret) const {
    const std::string hash = hashOf(secret);
    const std::shared_lock lock(m_mutex);
    const auto found = m_tokens.find(hash);
    if (found == m_tokens.end() || hasExpired(found->second)) {
        return std::nullopt;
    }
    return Access{found->second.scope, found->second.line, found->second.id};
}

bool AccessTokens::isValid(std::int64_t id) const {
    const std::shared_lock lock(m_mutex);
    return std::any_of(m_tokens.begin(), m_tokens.end(),
                       [id](const auto& each) { return each.second.id == id && !hasExpired(each.second); });
}

std::optional<AccessTokens::Created> AccessTokens::create(NamedToken token, Failure& failure) {
    std::string secret = newSecret();
    const std::string hash = hashOf(secret);
    token.created = now();
    failure = Failure::eDatabase;
    const bool done = m_database.write("storing a token", [&](Database::Session& session) {
        Query known = session.query("SELECT 1 FROM access_token WHERE name = ?");
        if (known.bind(token.name).next()) {
            failure = Failure::eNameTaken;
            return;
        }
        failure = Failure::eDatabase;
        session
            .query(
                "INSERT INTO access_token (hash, name, scope, line, created, expires) "
                "VALUES (?, ?, ?, ?, ?, ?)")
            .bind(hash)
            .bind(token.name)
            .bind(std::string(wordOf(token.scope)))
            .bind(token.line)
            .bind(std::int64_t{token.created.time_since_epoch().count()})
            .bind(token.expires ? std::optional<std::int64_t>(token.expires->time_since_epoch().count())
                                : std::nullopt)
            .run();
        Query id = session.query("SELECT id FROM access_token WHERE hash = ?");
        if (id.bind(hash).next()) {
            token.id = id.number();
        }
    });
    if (!done || token.id == 0) {
        return std::nullopt;
    }
    const std::unique_lock lock(m_mutex);
    m_tokens.emplace(hash, token);
    return Created{std::move(token), std::move(secret)};
}

std::vector<NamedToken> AccessTokens::list() const {
    std::vector<NamedToken> tokens;
    {
        const std::shared_lock lock(m_mutex);
        for (const auto& [hash, token] : m_tokens) {
            tokens.push_back(token);
        }
    }
    std::sort(tokens.begin(), tokens.end(),
              [](const auto& one, const auto& other) { return one.id < other.id; });
    return tokens;
}

std::optional<bool> AccessTokens::revoke(std::int64_t id) {
    bool found = false;
    const bool done = m_database.write("revoking a token", [&](Database::Session& session) {
        found = session.query("DELETE FROM access_token WHERE id = ?").bind(id).run() > 0;
    });
    if (!done) {
        return std::nullopt;
    }
    const std::unique_lock lock(m_mutex);
    std::erase_if(m_tokens, [id](const auto& each) { return each.second.id == id; });
    return found;
}

bool AccessTokens::hasExpired(const NamedToken& token) {
    return token.expires && *token.expires <= std::chrono::system_clock::now();
}

}  // namespace host
