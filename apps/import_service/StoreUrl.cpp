#include "import_service/StoreUrl.h"

#include "import_service/ExitCode.h"
#include "import_service/wording.h"
#include "runtime/address.h"

#include <array>
#include <charconv>
#include <utility>
#include <vector>

namespace imex::import_service {

namespace {

constexpr std::string_view kSqlite = "sqlite://";
constexpr std::array<std::string_view, 2> kPostgresql{"postgresql://", "postgres://"};
constexpr std::array<std::string_view, 2> kSecretParameters{"password=", "sslpassword="};

[[noreturn]] void refuse(std::string_view text, std::string_view why) {
  throw StartError(ExitCode::usage, "The store " + inQuotes(shownAddress(text)) + ' ' + std::string(why) +
                                        "; give sqlite://PATH, sqlite://:memory: or postgresql://USER@HOST/DATABASE.");
}

/// Whether an "@" stands elsewhere than behind a name and a password that are percent-encoded.
bool hasStrayAt(std::string_view url) {
  const std::size_t last = url.rfind('@');
  return last != std::string_view::npos && url.find_first_of("@/?#", url.find("://") + 3) != last;
}

/// The password before the host.
std::string_view passwordOfAuthority(std::string_view url) {
  const std::size_t at = url.rfind('@');
  const std::size_t colon = url.find(':', url.find("://") + 3);
  if (at == std::string_view::npos || colon == std::string_view::npos || colon > at)
    return {};
  return url.substr(colon + 1, at - colon - 1);
}

/// The passwords as they stand in the URL, in their order.
std::vector<std::string_view> passwordsOf(std::string_view url) {
  std::vector<std::string_view> passwords{passwordOfAuthority(url)};
  for (std::size_t at = url.find('?'); at != std::string_view::npos; at = url.find('&', at + 1)) {
    const std::string_view parameter = url.substr(at + 1, url.find('&', at + 1) - at - 1);
    for (const std::string_view name : kSecretParameters)
      if (parameter.starts_with(name))
        passwords.push_back(parameter.substr(name.size()));
  }
  std::erase(passwords, std::string_view());
  return passwords;
}

std::string percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t at = 0; at < text.size(); ++at) {
    unsigned char byte = 0;
    const std::string_view digits = text.substr(at + 1, 2);
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    const bool isEncoded = text[at] == '%' && error == std::errc{} && stop == digits.data() + 2;
    decoded += isEncoded ? static_cast<char>(byte) : text[at];
    at += isEncoded ? 2 : 0;
  }
  return decoded;
}

/// The database library reads a URL without a query part wrongly, so this also gives every URL one.
void addDefault(std::string& url, std::string_view name, std::string_view value) {
  const std::size_t query = url.find('?');
  if (query != std::string::npos && url.find(name, query) != std::string::npos)
    return;
  url.append(query == std::string::npos ? "?" : "&").append(name).append("=").append(value);
}

StoreUrl sqliteUrl(std::string_view text) {
  const std::string_view path = text.substr(kSqlite.size());
  if (path.empty())
    refuse(text, "names no file");
  // The database library takes the path in double quotes and knows no way to escape one.
  if (path.find('"') != std::string_view::npos)
    refuse(text, "has a double quote in its path");
  return {StoreUrl::System::sqlite, std::string(path), std::string(text)};
}

StoreUrl postgresqlUrl(std::string_view text) {
  // The database library would read on behind them as if another setting began there.
  if (text.find_first_of(" \t\r\n'\"") != std::string_view::npos)
    refuse(text, "has a blank or a quote, which are written %20, %27 and %22");
  if (hasStrayAt(text))
    refuse(text, "has an \"@\" elsewhere than before the host, or a \"/\", \"?\" or \"#\" in the password, which are "
                 "written %40, %2F, %3F and %23");
  std::string url(text);
  addDefault(url, "connect_timeout", "10");
  addDefault(url, "tcp_user_timeout", "30000");
  return {StoreUrl::System::postgresql, std::move(url), shownAddress(text)};
}

} // namespace

StoreUrl StoreUrl::parse(std::string_view text) {
  if (text.starts_with(kSqlite))
    return sqliteUrl(text);
  for (const std::string_view scheme : kPostgresql)
    if (text.starts_with(scheme))
      return postgresqlUrl(text);
  refuse(text, "is of no database system that this program knows");
}

std::string StoreUrl::withoutPassword(std::string text) const {
  if (system != System::postgresql)
    return text;
  for (const std::string_view password : passwordsOf(database)) {
    hide(text, password);
    hide(text, percentDecoded(password));
  }
  return text;
}

} // namespace imex::import_service
