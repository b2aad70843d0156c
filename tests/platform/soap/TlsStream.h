#pragma once

#include "support/FaultyServer.h"

#include <memory>
#include <string>

namespace imex::test {

/// When a certificate is valid, in seconds from now.
struct Validity {
  long from;
  long to;
};

inline constexpr Validity kToday{-3600, 24 * 3600L};
inline constexpr Validity kYesterday{-48 * 3600L, -24 * 3600L};
inline constexpr Validity kTomorrow{24 * 3600L, 48 * 3600L};

/// A key and a certificate that signs itself, made for the test. The certificate in PEM form is the authority that a
/// client has to trust.
class Certificate {
 public:
  /// `name` is the subject's alternative name: "IP:127.0.0.1" or "DNS:host".
  explicit Certificate(const std::string& name, Validity validity = kToday);
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
