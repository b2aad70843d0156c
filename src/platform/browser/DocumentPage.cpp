#include "platform/browser/DocumentPage.h"

#include "platform/browser/documentUrl.h"
#include "platform/browser/linkPolicy.h"

#include <QDesktopServices>
#include <QFontInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineSettings>

namespace imex::platform {

namespace {

// Browsers set text of fixed pitch in 13 pixels beside other text in 16.
constexpr int kFixedSize = 13;
constexpr int kTextSize = 16;

void open(Place place, const QUrl& url) {
  if (place == Place::outside)
    QDesktopServices::openUrl(url);
}

/// What is no part of reading a document.
void turnOffExtras(QWebEngineSettings& settings) {
  for (const auto extra :
       {QWebEngineSettings::NavigateOnDropEnabled, QWebEngineSettings::HyperlinkAuditingEnabled,
        QWebEngineSettings::AutoLoadIconsForPage, QWebEngineSettings::DnsPrefetchEnabled,
        QWebEngineSettings::PluginsEnabled, QWebEngineSettings::JavascriptCanOpenWindows,
        QWebEngineSettings::JavascriptCanAccessClipboard, QWebEngineSettings::LocalContentCanAccessRemoteUrls})
    settings.setAttribute(extra, false);
}

} // namespace

DocumentPage::DocumentPage(const QUrl& document, QWebEngineProfile& profile)
    : QWebEnginePage(&profile), m_document(document) {
  turnOffExtras(*settings());
  settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, !isLookedAtOnly(document));
  connect(this, &QWebEnginePage::newWindowRequested, this, [](const QWebEngineNewWindowRequest& request) {
    open(placeOfWindow(request.requestedUrl(), request.isUserInitiated()), request.requestedUrl());
  });
}

void DocumentPage::useFont(const QFont& font) {
  const QFontInfo shown(font);
  settings()->setFontFamily(QWebEngineSettings::StandardFont, shown.family());
  settings()->setFontSize(QWebEngineSettings::DefaultFontSize, shown.pixelSize());
  settings()->setFontSize(QWebEngineSettings::DefaultFixedFontSize, shown.pixelSize() * kFixedSize / kTextSize);
}

bool DocumentPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
  const Place place = placeOf({m_document, url, type, isMainFrame});
  open(place, url);
  return place == Place::here;
}

} // namespace imex::platform
