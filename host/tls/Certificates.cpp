#include "host/tls/Certificates.h"

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/sha.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <array>
#include <cstddef>
#include <ctime>
#include <fstream>
#include <vector>

#include "host/tls/TlsError.h"

namespace host {
namespace {

template <auto release>
struct Release {
    template <typename Type>
    void operator()(Type* object) const noexcept {
        static_cast<void>(release(object));
    }
};
using Bio = std::unique_ptr<BIO, Release<&BIO_free>>;
using Certificate = std::unique_ptr<X509, Release<&X509_free>>;
using AlternativeNames = std::unique_ptr<GENERAL_NAMES, Release<&GENERAL_NAMES_free>>;

/// OpenSSL does not tell a missing file from one of another kind.
void requireReadable(const std::filesystem::path& file, const char* what) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored)) {
        throw TlsError("the " + std::string(what) + " " + file.string() + " does not exist");
    }
    if (!std::ifstream(file).is_open()) {
        throw TlsError("the " + std::string(what) + " " + file.string() +
                       " cannot be read; the program runs as a user who may not");
    }
}

std::chrono::sys_seconds timeOf(const ASN1_TIME* time) {
    std::tm parts{};
    ASN1_TIME_to_tm(time, &parts);
    return std::chrono::sys_seconds(std::chrono::seconds(::timegm(&parts)));
}

std::string hostNameOf(const X509& certificate) {
    const AlternativeNames names(
        static_cast<GENERAL_NAMES*>(X509_get_ext_d2i(&certificate, NID_subject_alt_name, nullptr, nullptr)));
    for (int at = 0; names && at < sk_GENERAL_NAME_num(names.get()); ++at) {
        const GENERAL_NAME* const each = sk_GENERAL_NAME_value(names.get(), at);
        if (each->type == GEN_DNS) {
            const unsigned char* const text = ASN1_STRING_get0_data(each->d.dNSName);
            std::string name(text, text + ASN1_STRING_length(each->d.dNSName));
            if (name.find('*') == std::string::npos) {
                return name;
            }
        }
    }
    return {};
}

std::string pinOf(const X509& certificate) {
    const X509_PUBKEY* const key = X509_get_X509_PUBKEY(&certificate);
    unsigned char* bytes = nullptr;
    const int size = i2d_X509_PUBKEY(key, &bytes);
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    SHA256(bytes, static_cast<std::size_t>(size), digest.data());
    OPENSSL_free(bytes);
    // Four characters for each three bytes, and the end.
    std::array<unsigned char, (SHA256_DIGEST_LENGTH + 2) / 3 * 4 + 1> text{};
    const int length = EVP_EncodeBlock(text.data(), digest.data(), static_cast<int>(digest.size()));
    return "sha256//" + std::string(text.begin(), text.begin() + length);
}

}  // namespace

std::shared_ptr<asio::ssl::context> tlsContext(asio::ssl::context::method method) {
    try {
        auto context = std::make_shared<asio::ssl::context>(method);
        SSL_CTX_set_min_proto_version(context->native_handle(), TLS1_2_VERSION);
        return context;
    } catch (const std::system_error& error) {
        throw TlsError(std::string("TLS cannot be used: ") + error.what());
    }
}

void useCertificate(asio::ssl::context& context, const CertificateFiles& files) {
    requireReadable(files.certificate, "certificate");
    requireReadable(files.key, "key");
    std::error_code error;
    context.use_certificate_chain_file(files.certificate.string(), error);
    if (error) {
        throw TlsError(files.certificate.string() + " has no certificate in PEM form: " + error.message());
    }
    // A key with a passphrase would ask for it on the terminal.
    context.set_password_callback(
        [](std::size_t, asio::ssl::context::password_purpose) { return std::string(); });
    context.use_private_key_file(files.key.string(), asio::ssl::context::pem, error);
    if (error) {
        throw TlsError(files.key.string() + " has no key in PEM form that belongs to the certificate " +
                       files.certificate.string() + " and needs no passphrase: " + error.message());
    }
}

void requirePeerOf(asio::ssl::context& context, const std::filesystem::path& authorities) {
    std::error_code error;
    if (authorities.empty()) {
        context.set_default_verify_paths(error);
    } else {
        requireReadable(authorities, "file of authorities");
        context.load_verify_file(authorities.string(), error);
    }
    if (error) {
        throw TlsError(authorities.string() + " has no certificate in PEM form: " + error.message());
    }
    context.set_verify_mode(asio::ssl::verify_peer | asio::ssl::verify_fail_if_no_peer_cert);
}

CertificateFacts factsOfCertificate(const std::filesystem::path& file) {
    requireReadable(file, "certificate");
    const Bio source(BIO_new_file(file.c_str(), "r"));
    const Certificate certificate(source ? PEM_read_bio_X509(source.get(), nullptr, nullptr, nullptr)
                                         : nullptr);
    if (!certificate) {
        throw TlsError(file.string() + " has no certificate in PEM form");
    }
    return {.notBefore = timeOf(X509_get0_notBefore(certificate.get())),
            .notAfter = timeOf(X509_get0_notAfter(certificate.get())),
            .pin = pinOf(*certificate),
            .hostName = hostNameOf(*certificate)};
}

}  // namespace host
