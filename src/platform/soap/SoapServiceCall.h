#pragma once

#include "host/ServiceCall.h"
#include "host/Settings.h"
#include "host/TransportFactory.h"
#include "runtime/export.h"

namespace imex::platform {

/// The service call over SOAP 1.1. The bean is one parameter, named by its type, of two children: REQUESTINFORMATION
/// with its eight elements, the flags as "true" or "false", and LINES with a LINE for each line. The user identifier
/// is the header entry "userID", the namespace is the SOAP action, and the proxy is the one of the host's settings.
///
/// A bean without one of its parts is error 91. Nothing is sent where a text cannot be carried by XML (error 1008).
class IMEX_EXPORT SoapServiceCall : public host::ServiceCall {
 public:
  /// Both objects are the caller's and outlive this one.
  SoapServiceCall(host::TransportFactory& factory, const host::Settings& settings);

  std::shared_ptr<host::SoapNode> call(const host::ServiceRequest& request) override;

 private:
  void prepare(host::HttpTransport& transport, const host::ServiceRequest& request) const;

  host::TransportFactory& m_factory;
  const host::Settings& m_settings;
};

} // namespace imex::platform
