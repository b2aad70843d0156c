#pragma once

#include "host/Browser.h"
#include "runtime/export.h"

#include <QUrl>
#include <QWidget>

#include <memory>
#include <string>
#include <string_view>

class QAction;
class QLabel;
class QStackedLayout;
class QWebEngineLoadingInfo;
class QWebEngineProfile;
class QWebEngineView;

namespace imex::platform {

class DocumentPage;
class FindBar;
class OwnFolderRequests;

/// The browser as a widget, on Qt WebEngine.
///
/// What a program must do. A program that is linked with this library needs nothing: the engine prepares itself when
/// the QApplication is made. A program that loads the library later, as a plugin, sets Qt::AA_ShareOpenGLContexts
/// before it makes its QApplication. The engine does not run for the superuser unless QTWEBENGINE_DISABLE_SANDBOX is
/// set in the environment. The engine itself starts with the first document, so that a form with a browser on it can be
/// made anywhere, in Designer too; where it cannot start, navigate() and print() fail with error 429, which says why.
///
/// What it keeps to itself. A document of the file system may load pictures, styles and fonts of its own folder, and
/// nothing else; see OwnFolderRequests and linkPolicy.h. Links lead outside through QDesktopServices, so
/// QDesktopServices::setUrlHandler() takes them. Nothing is kept on disk, no cookies either.
///
/// Text that a document gives no size has that of the widget's font(), which is the desktop's unless the host sets
/// another. Ctrl+F finds a text in the document.
class IMEX_EXPORT WebBrowser : public QWidget, public host::Browser {
  Q_OBJECT

 public:
  /// An empty page. The engine is not started yet.
  explicit WebBrowser(QWidget* parent = nullptr);
  ~WebBrowser() override;

  void navigate(std::string_view address) override;
  std::string address() const override;
  void print() override;

  /// Opens the find bar. A control that holds the browser takes the action too, so that its key works all over it.
  QAction* findAction() const { return m_find; }

  /// Closes the find bar. False where it was closed already.
  bool closeFind();

 Q_SIGNALS:
  /// A document has come, or will not.
  void loaded(bool isComplete);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void startEngine();
  void open(const QUrl& document);
  QWebEngineProfile& profileFor(const QUrl& document);
  void keepTabOrder();
  void takeLoading(const QWebEngineLoadingInfo& info);
  void showContent(QWidget* content);
  void showRefusal(const QUrl& url);
  void waitForDocument();
  void find(const QString& text, bool isBackward);

  QStackedLayout* m_content;
  QLabel* m_paper; ///< the empty page, and what is said in place of a document
  FindBar* m_findBar;
  QAction* m_find;
  QWebEngineView* m_view = nullptr; ///< null until the engine has started
  QUrl m_document;
  bool m_isLoading = false;
  bool m_isPrinting = false;

  // Documents of the file system and those of the web share nothing. Profiles outlive their pages.
  std::unique_ptr<OwnFolderRequests> m_requests;
  std::unique_ptr<QWebEngineProfile> m_ownFolder;
  std::unique_ptr<QWebEngineProfile> m_web;
  std::unique_ptr<DocumentPage> m_page;
};

} // namespace imex::platform
