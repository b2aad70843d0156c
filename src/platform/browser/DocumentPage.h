#pragma once

#include <QUrl>
#include <QWebEnginePage>

class QFont;

namespace imex::platform {

/// The page of one document. It goes where the link policy says and hands the rest to the desktop.
class DocumentPage : public QWebEnginePage {
  Q_OBJECT

 public:
  /// A page that will show `document`. The profile outlives it.
  DocumentPage(const QUrl& document, QWebEngineProfile& profile);

  /// Text whose size and typeface the document leaves open has those of `font`.
  void useFont(const QFont& font);

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;

  /// What a document tells its developers is dropped; it is not about the program.
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel /*level*/, const QString& /*message*/, int /*line*/,
                                const QString& /*source*/) override {}

 private:
  QUrl m_document;
};

} // namespace imex::platform
