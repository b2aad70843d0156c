#include "platform/soap/SoapTransportFactory.h"

#include "platform/soap/PugiSoapEnvelope.h"

#include <utility>

namespace imex::platform {

SoapTransportFactory::SoapTransportFactory(HttpOptions options) : m_options(std::move(options)) {}

std::unique_ptr<host::HttpTransport> SoapTransportFactory::createTransport() {
  return std::make_unique<CurlTransport>(m_options);
}

std::unique_ptr<host::SoapEnvelope> SoapTransportFactory::createEnvelope() {
  return std::make_unique<PugiSoapEnvelope>();
}

} // namespace imex::platform
