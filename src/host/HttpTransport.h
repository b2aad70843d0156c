#pragma once

#include "runtime/export.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace imex::host {

/// One HTTP exchange at a time: send() posts a message and waits, Receive() gives the answer.
/// Failures are RuntimeErrors from 1001 up whose descriptions say what happened and to which address; see
/// platform/soap/errors.h.
class IMEX_EXPORT HttpTransport {
 public:
  virtual ~HttpTransport() = default;

  /// Goes through the proxy `server` at `port`.
  virtual void SetProxy(std::string_view server, std::string_view port) = 0;

  /// Connects directly, whatever the environment says.
  virtual void NoProxy() = 0;

  /// The greatest time for the whole exchange, in milliseconds; 0 is without limit. Error 5 for a negative time.
  virtual void Timeout(std::int32_t milliseconds) = 0;

  /// The value of the SOAPAction header, without its quotes. Error 5 for control characters and quotes.
  virtual void SOAPAction(std::string_view action) = 0;

  /// Posts `text` to `endpoint` and waits for the whole answer.
  virtual void send(std::string_view endpoint, std::string_view text) = 0;

  /// Posts the text that the parts make in this order, as send() does. Where the parts need not be joined for that,
  /// they are not.
  virtual void sendParts(std::string_view endpoint, std::span<const std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
      text += part;
    send(endpoint, text);
  }

  /// The body of the answer to the last send(), in `encoding` ("UTF-8") where the HTTP headers say what it is in; where
  /// they do not, as it came, because it declares its encoding itself. Error 5 where the last send() failed, and for
  /// another encoding.
  virtual std::string Receive(std::string_view encoding) = 0;

  /// The same for the last time: the transport need not keep the body, and Receive() may then fail with error 5.
  virtual std::string takeAnswer(std::string_view encoding) { return Receive(encoding); }
};

} // namespace imex::host
