#pragma once

#include "host/HttpTransport.h"
#include "host/SoapEnvelope.h"
#include "runtime/export.h"

#include <memory>

namespace imex::host {

/// Hands out what an exchange over SOAP needs. Every call gives a new object.
class IMEX_EXPORT TransportFactory {
 public:
  virtual ~TransportFactory() = default;

  /// A transport that connects directly and has no time-out.
  virtual std::unique_ptr<HttpTransport> createTransport() = 0;

  /// An empty envelope.
  virtual std::unique_ptr<SoapEnvelope> createEnvelope() = 0;
};

} // namespace imex::host
