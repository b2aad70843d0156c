#pragma once

#include "host/TransportFactory.h"
#include "platform/soap/CurlTransport.h"
#include "runtime/export.h"

namespace imex::platform {

/// Hands out transports over libcurl and envelopes over pugixml.
class IMEX_EXPORT SoapTransportFactory : public host::TransportFactory {
 public:
  /// The options are those of every transport.
  explicit SoapTransportFactory(HttpOptions options = {});

  std::unique_ptr<host::HttpTransport> createTransport() override;
  std::unique_ptr<host::SoapEnvelope> createEnvelope() override;

 private:
  HttpOptions m_options;
};

} // namespace imex::platform
