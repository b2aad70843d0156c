#include "platform/browser/documentUrl.h"

#include "platform/files/DiskFiles.h"
#include "platform/qt/fileUrl.h"
#include "platform/qt/text.h"
#include "runtime/RuntimeError.h"
#include "runtime/address.h"

#include <QString>

#include <cstdint>
#include <filesystem>
#include <string>

namespace imex::platform {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void refuse(ErrorNumber number, std::string_view address) {
  throw RuntimeError(static_cast<std::int32_t>(number), "WebBrowser",
                     std::string(describe(number)) + ": " + std::string(address));
}

bool hasScheme(const QString& text, const char* scheme) {
  return text.startsWith(QLatin1String(scheme), Qt::CaseInsensitive);
}

/// The real path of a file that can be read. A missing folder is a missing file to whoever wants to see it.
fs::path readablePath(const std::string& path, std::string_view address) {
  if (path.empty() || path.find('\0') != std::string::npos)
    refuse(ErrorNumber::fileNotFound, address);
  try {
    const fs::path native = fs::absolute(nativePath(path));
    DiskFiles().openForInput(native.string());
    return fs::canonical(native.parent_path()) / native.filename();
  } catch (const RuntimeError& error) {
    refuse(error.is(ErrorNumber::pathNotFound) ? ErrorNumber::fileNotFound : static_cast<ErrorNumber>(error.number()),
           address);
  }
}

QUrl urlOfFileAddress(const QString& text, std::string_view address) {
  const QUrl given(QString(text).replace(QLatin1Char('\\'), QLatin1Char('/')));
  QUrl url = fileUrl(readablePath(given.toLocalFile().toStdString(), address));
  if (given.hasFragment())
    url.setFragment(given.fragment(QUrl::FullyEncoded));
  return url;
}

QUrl webUrl(const QString& text, std::string_view address) {
  const QUrl url(text);
  if (!url.isValid() || url.host().isEmpty())
    refuse(ErrorNumber::invalidProcedureCall, shownAddress(address));
  return url;
}

QUrl blankUrl(const QString& text, std::string_view address) {
  if (text.compare(QLatin1String("about:blank"), Qt::CaseInsensitive) != 0)
    refuse(ErrorNumber::invalidProcedureCall, address);
  return QUrl(QStringLiteral("about:blank"));
}

} // namespace

QUrl documentUrl(std::string_view address) {
  const QString text = toQt(address);
  if (hasScheme(text, "http:") || hasScheme(text, "https:"))
    return webUrl(text, address);
  if (hasScheme(text, "about:"))
    return blankUrl(text, address);
  if (hasScheme(text, "file:"))
    return urlOfFileAddress(text, address);
  return fileUrl(readablePath(std::string(address), address));
}

bool isLookedAtOnly(const QUrl& document) {
  return document.scheme() != QLatin1String("http") && document.scheme() != QLatin1String("https");
}

bool isSameDocument(const QUrl& a, const QUrl& b) {
  return a.matches(b, QUrl::RemoveFragment);
}

} // namespace imex::platform
