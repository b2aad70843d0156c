#include "desk/DocumentsPage.h"

#include "controls/common/text.h"
#include "platform/files/DiskFiles.h"
#include "runtime/RuntimeError.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace imex::desk {

namespace {

/// A file that can be shown. A missing one would leave an empty page.
bool isShown(const QUrl& url) {
  return url.isLocalFile() && QFileInfo(url.toLocalFile()).isFile();
}

} // namespace

PageBrowser::PageBrowser(QWidget* parent) : QTextBrowser(parent) {
  setOpenExternalLinks(false);
}

QVariant PageBrowser::loadResource(int type, const QUrl& name) {
  const QUrl url = source().isEmpty() ? name : source().resolved(name);
  return isShown(url) ? QTextBrowser::loadResource(type, url) : QVariant();
}

void PageBrowser::doSetSource(const QUrl& page, QTextDocument::ResourceType type) {
  if (isShown(page))
    QTextBrowser::doSetSource(page, type);
}

DocumentsPage::DocumentsPage(QWidget* parent)
    : QWidget(parent), m_heading(new QLabel), m_back(new QPushButton(QStringLiteral("Back"))),
      m_browser(new PageBrowser) {
  m_heading->setTextFormat(Qt::PlainText);
  m_heading->setWordWrap(true);
  m_heading->setTextInteractionFlags(Qt::TextSelectableByMouse);
  m_heading->setText(QStringLiteral("No document. Press Specifications or Import Results on the Import page."));
  m_back->setShortcut(QKeySequence::Back);
  m_back->setToolTip(QStringLiteral("To the page before (%1)").arg(m_back->shortcut().toString()));
  m_back->setEnabled(false);
  m_browser->setObjectName(QStringLiteral("browser"));
  m_browser->setAccessibleName(QStringLiteral("Document"));
  connect(m_back, &QPushButton::clicked, m_browser, &QTextBrowser::backward);
  connect(m_browser, &QTextBrowser::backwardAvailable, m_back, &QWidget::setEnabled);
  connect(m_browser, &QTextBrowser::sourceChanged, this, [this](const QUrl& page) {
    m_heading->setText(page.fileName());
    m_heading->setToolTip(page.toLocalFile());
  });

  auto* top = new QHBoxLayout;
  top->addWidget(m_heading, 1);
  top->addWidget(m_back);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(m_browser, 1);
  setFocusProxy(m_browser);
}

void DocumentsPage::show(const QString& path) {
  const QUrl page = QUrl::fromLocalFile(toQt(platform::nativePath(toCore(path)).string()));
  if (!isShown(page))
    throw RuntimeError(ErrorNumber::fileNotFound, "DocumentsPage");
  if (page == m_browser->source())
    m_browser->reload();
  else
    m_browser->setSource(page, QTextDocument::HtmlResource);
}

} // namespace imex::desk
