#pragma once

#include "support/FaultyServer.h"

#include <memory>
#include <string>

namespace imex::test {

/// A key and a certificate that signs itself, made for the test and valid from an hour ago for a day. The certificate
/// in PEM form is the authority that a client has to trust.
class Certificate {
 public:
  /// `name` is the subject's alternative name: "IP:127.0.0.1" or "DNS:host".
  explicit Certificate(const std::string& name);
  ~Certificate();
  Certificate(const Certificate&) = delete;
  Certificate& operator=(const Certificate&) = delete;

  std::string pem() const;

  /// For a server that speaks TLS with this certificate, which outlives it.
  MakeStream makeStream() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> m_parts;
};

} // namespace imex::test
