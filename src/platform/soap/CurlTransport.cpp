#include "platform/soap/CurlTransport.h"

#include "platform/soap/PugiSoapEnvelope.h"
#include "platform/soap/errors.h"
#include "platform/soap/xmlText.h"
#include "platform/system/system.h"
#include "runtime/address.h"
#include "runtime/encoding.h"
#include "runtime/text.h"

#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <limits>
#include <memory>
#include <utility>

namespace imex::platform {

namespace {

constexpr const char* kSource = "CurlTransport";
constexpr std::size_t kLargestHeaders = std::size_t{256} * 1024;
constexpr long kLargestPort = 65535;
constexpr long kUploadBuffer = 256L * 1024;
constexpr long kReceiveBuffer = 256L * 1024;
constexpr long kNoConnectTimeout = std::numeric_limits<std::int32_t>::max(); // to the library, 0 means five minutes
constexpr std::size_t kReservedAnswer = std::size_t{32} * 1024 * 1024;

struct HandleDeleter {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  void operator()(char* text) const { curl_free(text); }
};

using EasyHandle = std::unique_ptr<CURL, HandleDeleter>;
using Url = std::unique_ptr<CURLU, HandleDeleter>;
using HeaderList = std::unique_ptr<curl_slist, HandleDeleter>;
using CurlText = std::unique_ptr<char, HandleDeleter>;

/// The library's state of the process.
struct Library {
  Library() : result(curl_global_init(CURL_GLOBAL_DEFAULT)) {}
  ~Library() { curl_global_cleanup(); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  CURLcode result;
};

[[noreturn]] void throwOutOfMemory() {
  throw RuntimeError(ErrorNumber::outOfMemory, kSource);
}

EasyHandle createHandle() {
  static const Library library;
  if (library.result != CURLE_OK)
    throw curlError(library.result, "", "");
  EasyHandle handle(curl_easy_init());
  if (!handle)
    throwOutOfMemory();
  return handle;
}

[[noreturn]] void throwBadAddress(std::string_view address) {
  throw soapError(SoapError::badAddress, kSource,
                  "The address \"" + shownAddress(address) + "\" is not an http or https address");
}

/// Error 1010 for an address that the library does not take.
void requireTaken(CURLUcode code, std::string_view address) {
  if (code == CURLUE_OUT_OF_MEMORY)
    throwOutOfMemory();
  if (code != CURLUE_OK)
    throwBadAddress(address);
}

/// Error 1010 for anything but an http or https address.
void requireAddress(std::string_view address) {
  const Url url(curl_url());
  if (!url)
    throwOutOfMemory();
  if (address.find('\0') != std::string_view::npos)
    throwBadAddress(address);
  requireTaken(curl_url_set(url.get(), CURLUPART_URL, std::string(address).c_str(), 0), address);
  char* scheme = nullptr;
  requireTaken(curl_url_get(url.get(), CURLUPART_SCHEME, &scheme, 0), address);
  const CurlText owner(scheme);
  const std::string_view name = scheme;
  if (name != "http" && name != "https")
    throwBadAddress(address);
}

/// The value of the parameter `charset` of a content type; empty where it has none that is understood.
std::string_view charsetOf(std::string_view contentType) {
  constexpr std::string_view kKey = "CHARSET=";
  for (std::size_t at = contentType.find(';'); at != std::string_view::npos; at = contentType.find(';')) {
    contentType.remove_prefix(std::min(contentType.size(), contentType.find_first_not_of("; \t", at)));
    if (!equalsIgnoringCase(contentType.substr(0, kKey.size()), kKey))
      continue;
    const std::string_view value = contentType.substr(kKey.size());
    const std::size_t begin = value.starts_with('"') ? 1 : 0;
    const std::string_view charset = value.substr(begin, value.find_first_of("\"; \t", begin) - begin);
    return xmlEncoding(charset) ? charset : std::string_view{};
  }
  return {};
}

/// The body in UTF-8 where its content type names another encoding, else as it came. A converted body gets a byte order
/// mark, which counts for more than what its own XML declaration says.
std::string bodyInUtf8(std::string body, std::string_view charset) {
  if (charset.empty() || xmlEncoding(charset) == XmlEncoding::utf8)
    return body;
  return std::string(kUtf8Mark) + xmlInUtf8(body, charset);
}

/// One POST with its handle, its limits and what came back.
class Exchange {
 public:
  Exchange(std::string_view address, const HttpOptions& options)
      : m_options(options), m_handle(createHandle()), m_shownAddress(shownAddress(address)) {
    requireAddress(address);
    // As a text: of a parsed address that finds no memory the library says that it is malformed.
    set(CURLOPT_URL, std::string(address).c_str());
    setSecurity();
    setReception();
  }

  void setTimeout(std::int32_t milliseconds);
  void connectDirectly() { set(CURLOPT_PROXY, ""); } // left unset, the environment would choose one
  void connectThrough(const std::string& server, const std::string& port);
  void setMessage(std::span<const std::string_view> parts, const std::string& action);

  /// Sends and waits.
  void run();

  /// The body of an answer that is a success or a SOAP fault; error 1004 for any other.
  std::string takeAnswer();

 private:
  template <class Value>
  void set(CURLoption option, Value value) {
    const CURLcode code = curl_easy_setopt(m_handle.get(), option, value);
    if (code != CURLE_OK)
      throw curlError(code, m_shownAddress, "");
  }
  void setSecurity();
  void setReception();
  void reserveBody();
  void addHeader(const std::string& line);

  long number(CURLINFO info) const {
    long value = 0;
    curl_easy_getinfo(m_handle.get(), info, &value);
    return value;
  }
  bool hasAnswerStarted() const {
    curl_off_t microseconds = 0;
    curl_easy_getinfo(m_handle.get(), CURLINFO_STARTTRANSFER_TIME_T, &microseconds);
    return microseconds > 0;
  }
  std::string contentType() const {
    char* type = nullptr;
    curl_easy_getinfo(m_handle.get(), CURLINFO_CONTENT_TYPE, &type);
    return type == nullptr ? std::string() : std::string(type);
  }
  [[noreturn]] void throwFailure(CURLcode code) const;
  RuntimeError statusError(const std::string& sender, long status) const;

  static std::size_t onRead(char* buffer, std::size_t, std::size_t size, void* self) noexcept;
  static std::size_t onBody(char* data, std::size_t, std::size_t size, void* self) noexcept;
  static std::size_t onHeader(char* data, std::size_t, std::size_t size, void* self) noexcept;

  const HttpOptions& m_options;
  EasyHandle m_handle;
  HeaderList m_headers;
  std::string m_shownAddress; ///< with the proxy, where there is one
  std::string m_proxy;        ///< server and port
  std::int32_t m_timeout = 0; ///< milliseconds; 0 for none
  std::array<char, CURL_ERROR_SIZE> m_detail{};

  std::span<const std::string_view> m_parts; ///< of the message
  std::size_t m_part = 0;                    ///< the one that is being sent, and how much of it was
  std::size_t m_sentOfPart = 0;
  std::string m_body;
  std::size_t m_headerBytes = 0;
  bool m_isHeadComplete = false;
  std::exception_ptr m_error; ///< what a callback could not let through the library
  bool m_isBodyTooLarge = false;
};

void Exchange::setSecurity() {
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  set(CURLOPT_FOLLOWLOCATION, 0L);
  set(CURLOPT_SSL_VERIFYPEER, 1L);
  set(CURLOPT_SSL_VERIFYHOST, 2L);
  set(CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
  if (!m_options.caFile.empty())
    set(CURLOPT_CAINFO, m_options.caFile.c_str());
}

void Exchange::setReception() {
  set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_BUFFERSIZE, kReceiveBuffer);
  set(CURLOPT_TCP_KEEPALIVE, 1L); // an exchange without a time-out must still notice that the server is gone
  set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  set(CURLOPT_ERRORBUFFER, m_detail.data());
  set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(m_options.largestAnswer));
  set(CURLOPT_WRITEFUNCTION, &Exchange::onBody);
  set(CURLOPT_WRITEDATA, static_cast<void*>(this));
  set(CURLOPT_HEADERFUNCTION, &Exchange::onHeader);
  set(CURLOPT_HEADERDATA, static_cast<void*>(this));
}

/// One limit holds for the whole exchange, so connecting has none of its own.
void Exchange::setTimeout(std::int32_t milliseconds) {
  m_timeout = milliseconds;
  set(CURLOPT_TIMEOUT_MS, long{milliseconds});
  set(CURLOPT_CONNECTTIMEOUT_MS, kNoConnectTimeout);
}

void Exchange::connectThrough(const std::string& server, const std::string& port) {
  m_proxy = server + ':' + shownAddress(port); // it is a setting, and might hold all of a proxy's address
  m_shownAddress += " through the proxy " + m_proxy;
  long number = 0;
  const auto [end, error] = std::from_chars(port.data(), port.data() + port.size(), number);
  if (error != std::errc() || end != port.data() + port.size() || number < 1 || number > kLargestPort)
    throw curlError(CURLE_PROXY, m_shownAddress, '"' + shownAddress(port) + "\" is not the number of a port");
  set(CURLOPT_PROXYTYPE, long{CURLPROXY_HTTP});
  set(CURLOPT_PROXY, server.c_str());
  set(CURLOPT_PROXYPORT, number);
  set(CURLOPT_NOPROXY, ""); // no address is exempt
}

void Exchange::addHeader(const std::string& line) {
  curl_slist* longer = curl_slist_append(m_headers.get(), line.c_str());
  if (longer == nullptr)
    throwOutOfMemory();
  static_cast<void>(m_headers.release());
  m_headers.reset(longer);
}

void Exchange::setMessage(std::span<const std::string_view> parts, const std::string& action) {
  addHeader("Content-Type: text/xml; charset=utf-8");
  addHeader("SOAPAction: \"" + action + '"');
  addHeader("Expect:"); // the whole message goes out at once
  set(CURLOPT_HTTPHEADER, m_headers.get());
  set(CURLOPT_POST, 1L);
  set(CURLOPT_READFUNCTION, &Exchange::onRead);
  set(CURLOPT_READDATA, static_cast<void*>(this));
  set(CURLOPT_UPLOAD_BUFFERSIZE, kUploadBuffer);
  m_parts = parts;
  std::size_t size = 0;
  for (const std::string_view part : parts)
    size += part.size();
  set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(size));
}

std::size_t Exchange::onRead(char* buffer, std::size_t, std::size_t size, void* self) noexcept {
  auto& exchange = *static_cast<Exchange*>(self);
  std::size_t filled = 0;
  while (filled < size && exchange.m_part < exchange.m_parts.size()) {
    const std::string_view rest = exchange.m_parts[exchange.m_part].substr(exchange.m_sentOfPart);
    const std::size_t count = rest.copy(buffer + filled, size - filled);
    filled += count;
    exchange.m_sentOfPart += count;
    if (count < rest.size())
      break;
    ++exchange.m_part;
    exchange.m_sentOfPart = 0;
  }
  return filled;
}

/// Makes room for the answer as soon as its size is known, within reason.
void Exchange::reserveBody() {
  curl_off_t size = 0;
  if (!m_body.empty() || curl_easy_getinfo(m_handle.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &size) != CURLE_OK)
    return;
  m_body.reserve(std::min(static_cast<std::size_t>(std::max<curl_off_t>(size, 0)), kReservedAnswer));
  system::expectFilling(m_body.data(), m_body.capacity());
}

std::size_t Exchange::onBody(char* data, std::size_t, std::size_t size, void* self) noexcept {
  auto& exchange = *static_cast<Exchange*>(self);
  if (size > exchange.m_options.largestAnswer - exchange.m_body.size()) {
    exchange.m_isBodyTooLarge = true;
    return CURL_WRITEFUNC_ERROR;
  }
  try {
    exchange.reserveBody();
    exchange.m_body.append(data, size);
  } catch (...) {
    exchange.m_error = std::current_exception();
    return CURL_WRITEFUNC_ERROR;
  }
  return size;
}

std::size_t Exchange::onHeader(char* data, std::size_t, std::size_t size, void* self) noexcept {
  auto& exchange = *static_cast<Exchange*>(self);
  const std::string_view line(data, size);
  if (line.starts_with("HTTP/"))
    exchange.m_isHeadComplete = false; // the head of an interim answer may have come before
  if (line == "\r\n" || line == "\n")
    exchange.m_isHeadComplete = true;
  exchange.m_headerBytes += size;
  return exchange.m_headerBytes > kLargestHeaders ? CURL_WRITEFUNC_ERROR : size;
}

void Exchange::run() {
  const CURLcode code = curl_easy_perform(m_handle.get());
  if (code != CURLE_OK)
    throwFailure(code);
  // The library takes an answer that ends within its headers for one without a body.
  if (!m_isHeadComplete)
    throw curlError(CURLE_PARTIAL_FILE, m_shownAddress, "connection closed within the headers");
}

void Exchange::throwFailure(CURLcode code) const {
  if (m_error)
    std::rethrow_exception(m_error);
  if (m_isBodyTooLarge || code == CURLE_FILESIZE_EXCEEDED)
    throw curlError(CURLE_FILESIZE_EXCEEDED, m_shownAddress,
                    "more than " + std::to_string(m_options.largestAnswer) + " bytes");
  if (m_headerBytes > kLargestHeaders)
    throw curlError(CURLE_FILESIZE_EXCEEDED, m_shownAddress,
                    "more than " + std::to_string(kLargestHeaders) + " bytes of headers");
  // The library's way to say that a header line is longer than it takes.
  if (code == CURLE_OUT_OF_MEMORY && hasAnswerStarted())
    throw curlError(CURLE_FILESIZE_EXCEEDED, m_shownAddress, "a header line is too long");
  const long connectStatus = number(CURLINFO_HTTP_CONNECTCODE);
  if (connectStatus >= 300)
    throw statusError("The proxy " + m_proxy, connectStatus);
  throw curlError(code, m_shownAddress, m_detail.data(), m_timeout);
}

RuntimeError Exchange::statusError(const std::string& sender, long status) const {
  return soapError(SoapError::httpStatus, kSource,
                   sender + " answered with HTTP status " + std::to_string(status) + " to a request for " +
                       m_shownAddress);
}

std::string Exchange::takeAnswer() {
  const std::string type = contentType();
  const std::string_view charset = charsetOf(type);
  const long status = number(CURLINFO_RESPONSE_CODE);
  const bool isSuccess = status >= 200 && status < 300;
  if (!isSuccess && !(status >= 400 && isSoapFault(m_body, charset)))
    throw statusError("The server", status);
  return bodyInUtf8(std::move(m_body), charset);
}

} // namespace

CurlTransport::CurlTransport(HttpOptions options) : m_options(std::move(options)) {}

void CurlTransport::SetProxy(std::string_view server, std::string_view port) {
  m_proxy = Proxy{std::string(server), std::string(port)};
}

void CurlTransport::NoProxy() {
  m_proxy.reset();
}

void CurlTransport::Timeout(std::int32_t milliseconds) {
  if (milliseconds < 0)
    throw RuntimeError(ErrorNumber::invalidProcedureCall, kSource);
  m_timeout = milliseconds;
}

void CurlTransport::SOAPAction(std::string_view action) {
  const auto breaksHeader = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || c == '"'; };
  if (std::any_of(action.begin(), action.end(), breaksHeader))
    throw RuntimeError(ErrorNumber::invalidProcedureCall, kSource);
  m_action = action;
}

void CurlTransport::send(std::string_view endpoint, std::string_view text) {
  sendParts(endpoint, {&text, 1});
}

void CurlTransport::sendParts(std::string_view endpoint, std::span<const std::string_view> parts) {
  m_answer.reset();
  Exchange exchange(endpoint, m_options);
  if (m_proxy)
    exchange.connectThrough(m_proxy->server, m_proxy->port);
  else
    exchange.connectDirectly();
  exchange.setTimeout(m_timeout);
  exchange.setMessage(parts, m_action);
  exchange.run();
  m_answer = exchange.takeAnswer();
}

std::string& CurlTransport::answerIn(std::string_view encoding) {
  if (!m_answer || xmlEncoding(encoding) != XmlEncoding::utf8)
    throw RuntimeError(ErrorNumber::invalidProcedureCall, kSource);
  return *m_answer;
}

std::string CurlTransport::Receive(std::string_view encoding) {
  return answerIn(encoding);
}

std::string CurlTransport::takeAnswer(std::string_view encoding) {
  std::string answer = std::move(answerIn(encoding));
  m_answer.reset();
  return answer;
}

} // namespace imex::platform
