#include "platform/soap/TlsStream.h"

#include <array>
#include <csignal>
#include <stdexcept>

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace imex::test {

namespace {

constexpr long kThirdVersion = 2; // versions of certificates count from 0

template <class T, void (*Free)(T*)>
struct Freeing {
  void operator()(T* object) const { Free(object); }
};

void freeBio(BIO* bio) {
  BIO_free(bio);
}

using Key = std::unique_ptr<EVP_PKEY, Freeing<EVP_PKEY, EVP_PKEY_free>>;
using X509Ptr = std::unique_ptr<X509, Freeing<X509, X509_free>>;
using Context = std::unique_ptr<SSL_CTX, Freeing<SSL_CTX, SSL_CTX_free>>;
using Session = std::unique_ptr<SSL, Freeing<SSL, SSL_free>>;
using Bio = std::unique_ptr<BIO, Freeing<BIO, freeBio>>;
using Extension = std::unique_ptr<X509_EXTENSION, Freeing<X509_EXTENSION, X509_EXTENSION_free>>;

void require(bool isDone) {
  if (!isDone)
    throw std::runtime_error("no certificate");
}

void addExtension(X509* certificate, int kind, const std::string& value) {
  const Extension extension(X509V3_EXT_conf_nid(nullptr, nullptr, kind, value.c_str()));
  require(extension && X509_add_ext(certificate, extension.get(), -1) == 1);
}

X509Ptr sign(EVP_PKEY* key, const std::string& name, Validity validity) {
  X509Ptr certificate(X509_new());
  X509* x = certificate.get();
  require(x != nullptr && X509_set_version(x, kThirdVersion) == 1);
  ASN1_INTEGER_set(X509_get_serialNumber(x), 1);
  X509_gmtime_adj(X509_getm_notBefore(x), validity.from);
  X509_gmtime_adj(X509_getm_notAfter(x), validity.to);
  X509_NAME* subject = X509_get_subject_name(x);
  const std::array<unsigned char, 4> commonName = {'T', 'e', 's', 't'};
  X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_ASC, commonName.data(), int{commonName.size()}, -1, 0);
  X509_set_issuer_name(x, subject);
  X509_set_pubkey(x, key);
  addExtension(x, NID_basic_constraints, "critical,CA:TRUE");
  addExtension(x, NID_subject_alt_name, name);
  require(X509_sign(x, key, EVP_sha256()) != 0);
  return certificate;
}

class TlsStream : public Stream {
 public:
  explicit TlsStream(Session session) : m_session(std::move(session)) {}
  ~TlsStream() override { SSL_shutdown(m_session.get()); }

  std::size_t read(char* buffer, std::size_t size) override {
    std::size_t count = 0;
    return SSL_read_ex(m_session.get(), buffer, size, &count) == 1 ? count : 0;
  }
  bool write(std::string_view bytes) override {
    std::size_t count = 0;
    return bytes.empty() || SSL_write_ex(m_session.get(), bytes.data(), bytes.size(), &count) == 1;
  }

 private:
  Session m_session;
};

} // namespace

struct Certificate::Parts {
  Key key;
  X509Ptr certificate;
  Context context;
};

Certificate::Certificate(const std::string& name, Validity validity) : m_parts(std::make_unique<Parts>()) {
  std::signal(SIGPIPE, SIG_IGN); // the library writes to sockets that a client may have closed
  m_parts->key.reset(EVP_EC_gen("P-256"));
  require(m_parts->key != nullptr);
  m_parts->certificate = sign(m_parts->key.get(), name, validity);
  m_parts->context.reset(SSL_CTX_new(TLS_server_method()));
  require(SSL_CTX_use_certificate(m_parts->context.get(), m_parts->certificate.get()) == 1 &&
          SSL_CTX_use_PrivateKey(m_parts->context.get(), m_parts->key.get()) == 1);
}

Certificate::~Certificate() = default;

std::string Certificate::pem() const {
  const Bio bio(BIO_new(BIO_s_mem()));
  require(PEM_write_bio_X509(bio.get(), m_parts->certificate.get()) == 1);
  char* text = nullptr;
  const long size = BIO_get_mem_data(bio.get(), &text);
  return {text, static_cast<std::size_t>(size)};
}

MakeStream Certificate::makeStream() const {
  SSL_CTX* context = m_parts->context.get();
  return [context](int socket) -> std::unique_ptr<Stream> {
    Session session(SSL_new(context));
    if (!session || SSL_set_fd(session.get(), socket) != 1 || SSL_accept(session.get()) != 1)
      return nullptr;
    return std::make_unique<TlsStream>(std::move(session));
  };
}

} // namespace imex::test
