#include "runtime/address.h"

#include <algorithm>
#include <cstddef>

namespace imex {

namespace {

constexpr std::string_view kMask = "***";
constexpr std::string_view kEndsOfPort = "/,?#=&"; // a comma: a database may have several hosts
constexpr std::string_view kDigits = "0123456789";

bool isOfScheme(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

/// The size of the scheme with its "://"; 0 where the text begins with none.
std::size_t schemeSize(std::string_view text) {
  const std::size_t end = text.find("://");
  if (end == std::string_view::npos ||
      !std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), isOfScheme))
    return 0;
  return end + 3;
}

/// The position behind the last "@" in either form; 0 where there is none.
std::size_t behindLastAt(std::string_view text) {
  const std::size_t plain = text.rfind('@');
  const std::size_t encoded = text.rfind("%40");
  return std::max(plain == std::string_view::npos ? 0 : plain + 1, encoded == std::string_view::npos ? 0 : encoded + 3);
}

bool startsWithPort(std::string_view text) {
  return text.substr(0, text.find_first_of(kEndsOfPort)).find_first_not_of(kDigits) == std::string_view::npos;
}

/// How much of a text that begins with a host may be shown.
std::size_t shownSize(std::string_view text) {
  const std::size_t host = text.starts_with('[') ? text.find(']') : 0; // colons within brackets are the host's own
  for (std::size_t i = text.find_first_of(":?#=&", host); i != std::string_view::npos;
       i = text.find_first_of(":?#=&", i + 1))
    if (text[i] != ':' || !startsWithPort(text.substr(i + 1)))
      return i + 1;
  return text.size();
}

} // namespace

std::string shownAddress(std::string_view address) {
  const std::size_t scheme = schemeSize(address);
  const std::size_t host = std::max(scheme, behindLastAt(address));
  std::string shown(address.substr(0, scheme));
  if (host > scheme)
    shown.append(kMask).append("@");
  const std::string_view rest = address.substr(host);
  const std::size_t size = shownSize(rest);
  shown += rest.substr(0, size);
  if (size < rest.size())
    shown += kMask;
  return shown;
}

void hide(std::string& text, std::string_view secret, std::string_view shown) {
  for (std::size_t at = text.find(secret); at != std::string::npos; at = text.find(secret, at + shown.size()))
    text.replace(at, secret.size(), shown);
}

} // namespace imex
