#pragma once

#include "host/HttpTransport.h"
#include "runtime/export.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace imex::platform {

/// What a transport is told once, by the program.
struct HttpOptions {
  std::size_t largestAnswer = std::size_t{256} * 1024 * 1024; ///< bytes; an answer with more is refused
  std::string caFile{}; ///< certificates in PEM form to trust besides those of the system; empty for none
};

/// An exchange over libcurl: one POST of a SOAP 1.1 message, over http or https.
///
/// Certificates and the host names in them are checked. A redirect is not followed. The environment's proxy variables
/// count for nothing; before SetProxy() the connection is direct, and after it every address, this machine's own
/// included, is reached through the proxy. The time-out holds for the whole exchange, name look-up included.
/// Without one, only the system ends an attempt to connect, and the error is 1001.
///
/// send() fails with an error of SoapError. A status other than 2xx is one of them (1004), unless it is 400 or above
/// and the body is a SOAP fault: that body is handed out, so that the fault text reaches the user. Whether the body of
/// a 2xx answer is a SOAP message at all is for the envelope to say. A message is never sent twice.
class IMEX_EXPORT CurlTransport : public host::HttpTransport {
 public:
  /// Connects directly, without a time-out, until it is told otherwise.
  explicit CurlTransport(HttpOptions options = {});

  void SetProxy(std::string_view server, std::string_view port) override;
  void NoProxy() override;
  void Timeout(std::int32_t milliseconds) override;
  void SOAPAction(std::string_view action) override;
  void send(std::string_view endpoint, std::string_view text) override;
  void sendParts(std::string_view endpoint, std::span<const std::string_view> parts) override;
  std::string Receive(std::string_view encoding) override;
  std::string takeAnswer(std::string_view encoding) override;

 private:
  std::string& answerIn(std::string_view encoding);

  struct Proxy {
    std::string server;
    std::string port;
  };

  HttpOptions m_options;
  std::optional<Proxy> m_proxy;
  std::int32_t m_timeout = 0;
  std::string m_action;
  std::optional<std::string> m_answer;
};

} // namespace imex::platform
