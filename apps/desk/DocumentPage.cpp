#include "desk/DocumentPage.h"

#include "desk/panels.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include <utility>

namespace imex::desk {

namespace {

constexpr int kColumns = 10;
constexpr int kOrderColumns = 6;
constexpr int kLeastRows = 4; // of the table that are seen in a small window

int columnsOf(DocumentKind kind) {
  return kind == DocumentKind::order ? kOrderColumns : kColumns;
}

} // namespace

QString nameOf(DocumentKind kind) {
  switch (kind) {
  case DocumentKind::project:
    return QStringLiteral("Project");
  case DocumentKind::quote:
    return QStringLiteral("Quote");
  case DocumentKind::order:
    return QStringLiteral("Order");
  }
  return {};
}

DocumentPage::DocumentPage(DocumentKind kind, QWidget* parent)
    : QWidget(parent), m_kind(kind), m_table(columnsOf(kind)), m_heading(new QLabel), m_view(new QTableView),
      m_panel(new ImExActionCtrl) {
  buildLayout();
  allowRetry(*m_panel);
  connectInserts();
  connect(&m_table, &QAbstractItemModel::rowsInserted, this, &DocumentPage::showCount);
  connect(&m_table, &QAbstractItemModel::rowsRemoved, this, &DocumentPage::showCount);
  showCount();
}

void DocumentPage::buildLayout() {
  const QString name = nameOf(m_kind);
  m_heading->setTextFormat(Qt::PlainText);
  m_view->setModel(&m_table);
  m_view->setObjectName(QStringLiteral("lineItems"));
  m_view->setAccessibleName(name + QStringLiteral(" line items"));
  m_view->setAlternatingRowColors(true);
  m_view->setTabKeyNavigation(false); // Tab leaves the table for the panel
  m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_view->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  useCompactRows(*m_view);
  m_view->setMinimumHeight((kLeastRows + 2) * m_view->verticalHeader()->defaultSectionSize());
  m_panel->setObjectName(QStringLiteral("panel") + name);

  auto* table = new QVBoxLayout;
  table->addWidget(m_heading);
  table->addWidget(m_view, 1);
  auto* layout = new QVBoxLayout(this);
  table->setContentsMargins(layout->contentsMargins()); // those that the panel has inside
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addLayout(table, 1);
  layout->addWidget(m_panel);
  setFocusProxy(m_panel);
}

void DocumentPage::connectInserts() {
  connect(m_panel, &ImExActionCtrl::insertProjectLineItems, this, [this](auto& items) { insert(items); });
  connect(m_panel, &ImExActionCtrl::insertQuoteLineItems, this, [this](auto& items) { insert(items); });
  connect(m_panel, &ImExActionCtrl::insertOrderLineItems, this, [this](auto& items) { insert(items); });
}

void DocumentPage::start() {
  m_panel->initializeClientToClient();
  m_panel->setDataType(static_cast<int>(m_kind));
}

void DocumentPage::insertLines(std::vector<LineItem> lines) {
  const int count = static_cast<int>(lines.size());
  m_undoStack.push(new InsertLineItems(m_table, std::move(lines)));
  m_view->scrollToBottom();
  Q_EMIT inserted(count);
}

void DocumentPage::showCount() {
  m_heading->setText(nameOf(m_kind) + QStringLiteral(": ") + countOfLines(m_table.rowCount()));
}

} // namespace imex::desk
