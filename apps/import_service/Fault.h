#pragma once

#include <stdexcept>
#include <string>

namespace imex::import_service {

/// Whose fault a fault is, in the words of SOAP 1.1.
enum class FaultCode {
  client,          ///< the request is wrong; sending it again does not help
  server,          ///< the request may be right; the service could not do it
  versionMismatch, ///< the envelope is not of SOAP 1.1
};

/// Ends the handling of one request. It is answered with a SOAP fault; nothing is stored.
class Fault : public std::runtime_error {
 public:
  Fault(FaultCode code, const std::string& text) : std::runtime_error(text), m_code(code) {}

  FaultCode code() const { return m_code; }

 private:
  FaultCode m_code;
};

/// The usual case: a request that is wrong.
class ClientFault : public Fault {
 public:
  explicit ClientFault(const std::string& text) : Fault(FaultCode::client, text) {}
};

} // namespace imex::import_service
