#include "platform/soap/errors.h"

#include "runtime/text.h"

#include <curl/curl.h>

#include <cstddef>
#include <utility>

namespace imex::platform {

namespace {

constexpr std::size_t kQuotedCharacters = 80;

/// The kind that a code belongs to, with the beginning and the end of its description: the address stands between.
struct Meaning {
  SoapError kind;
  std::string_view before;
  std::string_view behind;
  bool tellsDetail; ///< whether the library's message adds something
};

constexpr Meaning kUnknownServer{SoapError::noConnection, "No connection to ", ": the server's name is unknown", false};
constexpr Meaning kUnknownProxy{SoapError::noConnection, "No connection to ", ": the proxy's name is unknown", false};
constexpr Meaning kNoServer{SoapError::noConnection, "No connection to ", ": nothing accepts connections there", false};
constexpr Meaning kNoProxy{SoapError::noConnection, "No connection to ", "", true};
constexpr Meaning kUnreached{SoapError::noConnection, "No connection to ", ": it cannot be reached", true};
constexpr Meaning kTimeOut{SoapError::timeOut, "No complete answer from ", " within the time-out", false};
constexpr Meaning kTls{SoapError::tls, "No secure connection to ", "", true};
constexpr Meaning kNotHttp{SoapError::notSoap, "The answer from ", " is not an HTTP answer", false};
constexpr Meaning kTooLarge{SoapError::answerTooLarge, "The answer from ", " is too large", true};
constexpr Meaning kNoAnswer{SoapError::cutOff, "The connection to ", " was closed without an answer", false};
constexpr Meaning kLost{SoapError::cutOff, "The connection to ", " was lost", true};
constexpr Meaning kCutOff{SoapError::cutOff, "The answer from ", " was cut off", true};
constexpr Meaning kBadAddress{SoapError::badAddress, "The address ", " is not an http or https address", false};

const Meaning* meaningOf(CURLcode code, bool hasTimeout) {
  switch (code) {
  case CURLE_COULDNT_RESOLVE_HOST:
    return &kUnknownServer;
  case CURLE_COULDNT_RESOLVE_PROXY:
    return &kUnknownProxy;
  case CURLE_COULDNT_CONNECT:
    return &kNoServer;
  case CURLE_PROXY:
    return &kNoProxy;
  case CURLE_OPERATION_TIMEDOUT:
    return hasTimeout ? &kTimeOut : &kUnreached;
  case CURLE_SSL_CONNECT_ERROR:
  case CURLE_SSL_ENGINE_NOTFOUND:
  case CURLE_SSL_ENGINE_SETFAILED:
  case CURLE_SSL_ENGINE_INITFAILED:
  case CURLE_SSL_CERTPROBLEM:
  case CURLE_SSL_CIPHER:
  case CURLE_PEER_FAILED_VERIFICATION:
  case CURLE_USE_SSL_FAILED:
  case CURLE_SSL_CACERT_BADFILE:
  case CURLE_SSL_SHUTDOWN_FAILED:
  case CURLE_SSL_CRL_BADFILE:
  case CURLE_SSL_ISSUER_ERROR:
  case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
  case CURLE_SSL_INVALIDCERTSTATUS:
  case CURLE_SSL_CLIENTCERT:
    return &kTls;
  case CURLE_WEIRD_SERVER_REPLY:
  case CURLE_UNSUPPORTED_PROTOCOL: // the address was judged before: this is a server that speaks no HTTP/1
    return &kNotHttp;
  case CURLE_FILESIZE_EXCEEDED:
    return &kTooLarge;
  case CURLE_GOT_NOTHING:
    return &kNoAnswer;
  case CURLE_SEND_ERROR:
    return &kLost;
  case CURLE_PARTIAL_FILE:
  case CURLE_RECV_ERROR:
    return &kCutOff;
  case CURLE_URL_MALFORMAT:
    return &kBadAddress;
  default:
    return nullptr;
  }
}

/// The library's message without the full stop and line end that some of them have.
std::string sentence(CURLcode code, std::string_view detail) {
  const std::string_view text = detail.empty() ? std::string_view(curl_easy_strerror(code)) : detail;
  const std::size_t last = text.find_last_not_of(" .\r\n");
  return std::string(text.substr(0, last + 1));
}

/// Up to 80 characters in one line: white space and controls become single blanks, broken bytes question marks.
std::string beginningOf(std::string_view answer) {
  std::string result;
  std::size_t characters = 0;
  bool isBlankDue = false;
  for (std::size_t i = 0; i < answer.size();) {
    const CodePoint c = codePointAt(answer, i);
    i += c.bytes;
    if (c.valid && (c.value <= 0x20 || (c.value >= 0x7F && c.value <= 0xA0) || c.value == 0xFEFF)) {
      isBlankDue = characters != 0;
      continue;
    }
    characters += isBlankDue ? 2 : 1;
    if (characters > kQuotedCharacters)
      return result + "...";
    if (std::exchange(isBlankDue, false))
      result += ' ';
    appendUtf8(result, c.valid ? c.value : U'?');
  }
  return result;
}

} // namespace

RuntimeError soapError(SoapError kind, std::string source, std::string description) {
  return {static_cast<std::int32_t>(kind), std::move(source), std::move(description)};
}

RuntimeError curlError(int code, std::string_view address, std::string_view detail, std::int32_t timeout) {
  const auto curlCode = static_cast<CURLcode>(code);
  if (curlCode == CURLE_OUT_OF_MEMORY)
    return RuntimeError(ErrorNumber::outOfMemory, "CurlTransport");
  const Meaning* meaning = meaningOf(curlCode, timeout != 0);
  if (meaning == nullptr)
    return {static_cast<std::int32_t>(ErrorNumber::internalError), "CurlTransport",
            std::string(describe(ErrorNumber::internalError)) + ": " + sentence(curlCode, detail)};
  std::string description = std::string(meaning->before) + std::string(address) + std::string(meaning->behind);
  if (meaning->tellsDetail)
    description += ": " + sentence(curlCode, detail);
  return soapError(meaning->kind, "CurlTransport", std::move(description));
}

RuntimeError notSoapError(std::string what, std::string_view answer) {
  return soapError(SoapError::notSoap, "PugiSoapEnvelope", std::move(what) + ": \"" + beginningOf(answer) + '"');
}

} // namespace imex::platform
