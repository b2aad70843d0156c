#include "desk/settingChecks.h"

#include <QUrl>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace imex::desk {

namespace {

constexpr qint64 kGreatestPort = 65'535;
constexpr qint64 kGreatestTimeout = std::numeric_limits<std::int32_t>::max();

/// Whether the text is a number in plain digits within the limits.
bool isNumber(const QString& text, qint64 least, qint64 greatest) {
  const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
  bool isInRange = false;
  const qint64 number = text.toLongLong(&isInRange);
  return isInRange && std::all_of(text.begin(), text.end(), isDigit) && number >= least && number <= greatest;
}

} // namespace

QString checkAddress(const QString& text) {
  if (text.isEmpty())
    return {};
  const QUrl url(text, QUrl::StrictMode);
  const bool isHttp = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
  if (!url.isValid() || !isHttp || url.host().isEmpty() || url.port(1) == 0)
    return QStringLiteral("Must be a web address that begins with http:// or https://");
  return {};
}

QString checkPort(const QString& text) {
  if (text.isEmpty() || isNumber(text, 1, kGreatestPort))
    return {};
  return QStringLiteral("Must be a number from 1 to 65535, or empty");
}

QString checkTimeout(const QString& text) {
  if (isNumber(text, 0, kGreatestTimeout))
    return {};
  return QStringLiteral("Must be a number from 0 to 2147483647");
}

} // namespace imex::desk
