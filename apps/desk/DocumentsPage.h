#pragma once

#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QWidget>

namespace imex::desk {

/// Shows pages of the file system: text, tables and the pictures beside them. It runs no script, and nothing, neither
/// a page nor a picture, is fetched over a network.
class PageBrowser : public QTextBrowser {
  Q_OBJECT

 public:
  explicit PageBrowser(QWidget* parent = nullptr);

  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  void doSetSource(const QUrl& page, QTextDocument::ResourceType type) override;
};

/// The specification pages and the results page.
class DocumentsPage : public QWidget {
  Q_OBJECT

 public:
  explicit DocumentsPage(QWidget* parent = nullptr);

  /// Shows the page at a path, which may have either separator, anew where it is shown already. Error 53 where it is
  /// missing; what is shown then stays.
  void show(const QString& path);

 private:
  QLabel* m_heading;
  QPushButton* m_back;
  PageBrowser* m_browser;
};

} // namespace imex::desk
