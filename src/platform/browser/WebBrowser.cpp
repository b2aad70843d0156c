#include "platform/browser/WebBrowser.h"

#include "platform/browser/DocumentPage.h"
#include "platform/browser/FindBar.h"
#include "platform/browser/OwnFolderRequests.h"
#include "platform/browser/documentUrl.h"
#include "platform/browser/printing.h"
#include "runtime/RuntimeError.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QPrinter>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <QWebEngineFindTextResult>
#include <QWebEngineLoadingInfo>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include <cstdint>
#include <utility>

#include <unistd.h>

namespace imex::platform {

namespace {

[[noreturn]] void fail(ErrorNumber number, const std::string& description) {
  throw RuntimeError(static_cast<std::int32_t>(number), "WebBrowser", description);
}

/// The engine ends the whole program where it finds itself running for the superuser.
bool isRefusedToSuperuser() {
  return ::geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX") &&
         !qgetenv("QTWEBENGINE_CHROMIUM_FLAGS").contains("--no-sandbox");
}

/// Keeps a flag of `owner` set while it lives; the owner may go first.
class Marked {
 public:
  Marked(QObject* owner, bool& flag) : m_owner(owner), m_flag(flag) { m_flag = true; }
  ~Marked() {
    if (m_owner)
      m_flag = false;
  }
  Marked(const Marked&) = delete;
  Marked& operator=(const Marked&) = delete;

 private:
  QPointer<QObject> m_owner;
  bool& m_flag;
};

QLabel* makePaper() {
  auto* paper = new QLabel;
  paper->setObjectName(QStringLiteral("paper"));
  paper->setTextFormat(Qt::PlainText);
  paper->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  paper->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  paper->setWordWrap(true);
  paper->setMargin(12);
  paper->setAutoFillBackground(true);
  paper->setBackgroundRole(QPalette::Base);
  paper->setForegroundRole(QPalette::Text);
  return paper;
}

QString refusal(const QUrl& url) {
  if (url.isLocalFile())
    return QStringLiteral("This document cannot be shown: %1").arg(url.toLocalFile());
  return QStringLiteral("This address cannot be reached: %1").arg(url.toDisplayString());
}

} // namespace

WebBrowser::WebBrowser(QWidget* parent)
    : QWidget(parent), m_content(new QStackedLayout), m_paper(makePaper()), m_findBar(new FindBar),
      m_find(new QAction(QStringLiteral("Find..."), this)), m_document(QStringLiteral("about:blank")) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addLayout(m_content, 1);
  layout->addWidget(m_findBar);
  m_content->addWidget(m_paper);
  showContent(m_paper);

  m_find->setShortcut(QKeySequence::Find);
  m_find->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  addAction(m_find);
  connect(m_find, &QAction::triggered, m_findBar, &FindBar::open);
  connect(m_findBar, &FindBar::wanted, this, &WebBrowser::find);
  connect(m_findBar, &FindBar::closed, this, &WebBrowser::closeFind);
}

WebBrowser::~WebBrowser() = default;

// --- Documents ------------------------------------------------------------------------------------------------------

void WebBrowser::navigate(std::string_view address) {
  const QUrl document = documentUrl(address);
  if (m_view != nullptr || document != m_document)
    open(document);
}

std::string WebBrowser::address() const {
  return m_document.toString(QUrl::FullyEncoded).toStdString();
}

void WebBrowser::startEngine() {
  if (m_view != nullptr)
    return;
  if (!QCoreApplication::testAttribute(Qt::AA_ShareOpenGLContexts))
    fail(ErrorNumber::cannotCreateObject,
         "The browser cannot start: the application was made without Qt::AA_ShareOpenGLContexts");
  if (isRefusedToSuperuser())
    fail(ErrorNumber::cannotCreateObject,
         "The browser does not run for the superuser unless QTWEBENGINE_DISABLE_SANDBOX is set");
  m_view = new QWebEngineView;
  m_view->setAcceptDrops(false);
  m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
  m_content->addWidget(m_view);
}

QWebEngineProfile& WebBrowser::profileFor(const QUrl& document) {
  if (!isLookedAtOnly(document)) {
    if (!m_web)
      m_web = std::make_unique<QWebEngineProfile>();
    return *m_web;
  }
  if (!m_ownFolder) {
    m_requests = std::make_unique<OwnFolderRequests>();
    m_ownFolder = std::make_unique<QWebEngineProfile>();
    m_ownFolder->setUrlRequestInterceptor(m_requests.get());
  }
  m_requests->setDocument(document);
  return *m_ownFolder;
}

/// Each document has a page of its own, so that what holds for one never holds for the one before.
void WebBrowser::open(const QUrl& document) {
  startEngine();
  auto page = std::make_unique<DocumentPage>(document, profileFor(document));
  page->useFont(font());
  connect(page.get(), &QWebEnginePage::loadingChanged, this, &WebBrowser::takeLoading);
  connect(page.get(), &QWebEnginePage::findTextFinished, m_findBar, [this](const QWebEngineFindTextResult& result) {
    m_findBar->tell(result.numberOfMatches(), result.activeMatch());
  });
  connect(page.get(), &QWebEnginePage::renderProcessTerminated, this, [this] {
    m_isLoading = false;
    showRefusal(m_document);
    Q_EMIT loaded(false);
  });
  m_view->setPage(page.get());
  m_page = std::move(page);
  m_document = document;
  m_isLoading = true;
  showContent(m_view);
  m_page->load(document);
  keepTabOrder();
}

/// The engine puts a widget of its own into the view, at the end of the window's order.
void WebBrowser::keepTabOrder() {
  if (m_view->focusProxy() != nullptr)
    setTabOrder(m_paper, m_view->focusProxy());
}

void WebBrowser::takeLoading(const QWebEngineLoadingInfo& info) {
  m_isLoading = info.status() == QWebEngineLoadingInfo::LoadStartedStatus;
  if (m_isLoading)
    return;
  keepTabOrder();
  const bool isComplete = info.status() == QWebEngineLoadingInfo::LoadSucceededStatus;
  // A server that refuses says so in a page of its own.
  if (!isComplete && info.errorDomain() != QWebEngineLoadingInfo::HttpStatusCodeDomain)
    showRefusal(info.url());
  Q_EMIT loaded(isComplete);
}

void WebBrowser::showRefusal(const QUrl& url) {
  m_paper->setText(refusal(url));
  showContent(m_paper);
}

/// Shows the paper or the view in place of the other, which hands its focus on.
void WebBrowser::showContent(QWidget* content) {
  const QWidget* before = m_content->currentWidget();
  const QWidget* focus = window()->focusWidget();
  const bool hadFocus = focus != nullptr && (focus == before || before->isAncestorOf(focus));
  setFocusProxy(content);
  m_content->setCurrentWidget(content);
  if (hadFocus)
    content->setFocus();
}

void WebBrowser::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange && m_page)
    m_page->useFont(font());
  QWidget::changeEvent(event);
}

// --- Printing -------------------------------------------------------------------------------------------------------

void WebBrowser::print() {
  if (m_isPrinting)
    fail(ErrorNumber::deviceIoError, "A document is being printed already");
  if (m_view == nullptr)
    open(m_document);
  const Marked printing(this, m_isPrinting);
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(m_page->title());
  if (!askForPrinter(*m_view, printer))
    return;
  waitForDocument();
  printAndWait(*m_view, printer);
}

/// A file comes soon; a server may take its time, and the user is not to be held up by it.
void WebBrowser::waitForDocument() {
  if (!m_isLoading)
    return;
  if (!isLookedAtOnly(m_document))
    fail(ErrorNumber::deviceIoError, "The document is still being loaded");
  QEventLoop loop;
  connect(this, &WebBrowser::loaded, &loop, &QEventLoop::quit);
  connect(m_view, &QObject::destroyed, &loop, &QEventLoop::quit);
  const QPointer<WebBrowser> guard(this);
  loop.exec(QEventLoop::ExcludeUserInputEvents);
  if (!guard)
    fail(ErrorNumber::deviceIoError, "The document is gone");
}

// --- Finding --------------------------------------------------------------------------------------------------------

bool WebBrowser::closeFind() {
  if (m_findBar->isHidden())
    return false;
  m_findBar->hide();
  find(QString(), false);
  setFocus();
  return true;
}

void WebBrowser::find(const QString& text, bool isBackward) {
  if (m_page)
    m_page->findText(text, isBackward ? QWebEnginePage::FindBackward : QWebEnginePage::FindFlags());
  else
    m_findBar->tell(0, 0);
}

} // namespace imex::platform
