#include "platform/browser/linkPolicy.h"

#include "platform/browser/documentUrl.h"

#include <algorithm>
#include <array>

namespace imex::platform {

namespace {

bool isOfWeb(const QUrl& url) {
  return url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
}

bool isMail(const QUrl& url) {
  return url.scheme() == QLatin1String("mailto");
}

/// What the user or the browser does; a document by itself does the others.
bool isPlainStep(QWebEnginePage::NavigationType type) {
  constexpr std::array kPlain = {QWebEnginePage::NavigationTypeLinkClicked, QWebEnginePage::NavigationTypeTyped,
                                 QWebEnginePage::NavigationTypeBackForward, QWebEnginePage::NavigationTypeReload};
  return std::find(kPlain.begin(), kPlain.end(), type) != kPlain.end();
}

Place placeOfLookedAt(const Step& step) {
  if (!step.isMainFrame)
    return Place::nowhere;
  if (isSameDocument(step.document, step.target))
    return isPlainStep(step.type) ? Place::here : Place::nowhere;
  const bool isLink = step.type == QWebEnginePage::NavigationTypeLinkClicked;
  return isLink && (isOfWeb(step.target) || isMail(step.target)) ? Place::outside : Place::nowhere;
}

} // namespace

Place placeOf(const Step& step) {
  if (isLookedAtOnly(step.document))
    return placeOfLookedAt(step);
  if (isMail(step.target))
    return step.type == QWebEnginePage::NavigationTypeLinkClicked ? Place::outside : Place::nowhere;
  return step.isMainFrame && !isOfWeb(step.target) ? Place::nowhere : Place::here;
}

Place placeOfWindow(const QUrl& target, bool isUserInitiated) {
  return isUserInitiated && (isOfWeb(target) || isMail(target)) ? Place::outside : Place::nowhere;
}

} // namespace imex::platform
