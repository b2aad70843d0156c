#pragma once

#include <QUrl>
#include <QWebEngineUrlRequestInterceptor>

namespace imex::platform {

/// Refuses every request of a document of the file system but those for the document itself and for the pictures,
/// styles and fonts that lie in its folder or below. A link out of the folder counts as what it leads to.
class OwnFolderRequests : public QWebEngineUrlRequestInterceptor {
  Q_OBJECT

 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

  /// From now on, the requests are this document's. Until the first one everything is refused.
  void setDocument(const QUrl& document) { m_document = document; }

  void interceptRequest(QWebEngineUrlRequestInfo& request) override;

 private:
  bool isAllowed(const QWebEngineUrlRequestInfo& request) const;

  QUrl m_document;
};

} // namespace imex::platform
