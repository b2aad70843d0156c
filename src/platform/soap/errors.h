#pragma once

#include "runtime/RuntimeError.h"
#include "runtime/export.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace imex::platform {

/// What can go wrong in an exchange with a service. The values are the error numbers; all of them fit 16 bits.
///
/// Descriptions are sentences without a full stop, because callers put one behind them. They say what happened and to
/// which address; those of `notSoap`, which are about the answer alone, quote its beginning instead.
enum class SoapError : std::int32_t {
  noConnection = 1001,    ///< refused, unreachable, or the name of the server or of the proxy is unknown
  timeOut = 1002,         ///< the exchange took longer than it may
  tls = 1003,             ///< no secure connection: the certificate, the host name in it, or the protocol
  httpStatus = 1004,      ///< a status other than success, without a SOAP fault
  notSoap = 1005,         ///< the answer is no SOAP 1.1 message
  fault = 1006,           ///< a SOAP fault; the description is the fault text, exactly
  answerTooLarge = 1007,  ///< more bytes than an answer may have
  unsupportedText = 1008, ///< a text to be sent holds what XML cannot carry
  cutOff = 1009,          ///< the connection was lost before the end of the answer, or the answer is too short
  badAddress = 1010,      ///< the address is not an http or https address
};

/// The error of one kind. `source` is the name of the class that raises it.
IMEX_EXPORT RuntimeError soapError(SoapError kind, std::string source, std::string description);

/// The error for a result code of libcurl, other than success. `address` is the address as shownAddress() gives it,
/// `detail` the library's own message, empty for its standing text, and `timeout` the exchange's in milliseconds, 0
/// for none: a time-out is then the system's, which gave up connecting, and is 1001. Codes that no exchange over a
/// network explains become error 51, and a lack of memory becomes error 7.
IMEX_EXPORT RuntimeError curlError(int code, std::string_view address, std::string_view detail,
                                   std::int32_t timeout = 0);

/// Error 1005 for an answer: `what`, a colon and the beginning of `answer` in double quotes.
IMEX_EXPORT RuntimeError notSoapError(std::string what, std::string_view answer);

} // namespace imex::platform
