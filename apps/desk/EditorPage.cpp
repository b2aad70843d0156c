#include "desk/EditorPage.h"

#include "controls/common/text.h"
#include "desk/panels.h"
#include "module/ImExModule.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include <utility>

namespace imex::desk {

namespace {

constexpr int kMessageLines = 4;    // that are seen below the table
constexpr int kGreatestColumn = 60; // characters that a column is wide at first

RowsPtr readRows(const QString& fileName, Integer delimiterAscii) {
  auto rows = std::make_shared<Collection<StringsPtr>>();
  ImExModule::InputFile file(toCore(fileName));
  std::string_view line;
  while (file.readLine(line))
    rows->add(ImExModule::Parse(line, delimiterAscii));
  return rows;
}

} // namespace

EditorPage::EditorPage(QWidget* parent)
    : QWidget(parent), m_heading(new QLabel), m_view(new QTableView), m_messagesLabel(new QLabel),
      m_messages(new QPlainTextEdit) {
  buildLayout();
  connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { showMessages(current); });
  m_heading->setText(QStringLiteral("No file. Press Edit, New or Import on another page."));
}

void EditorPage::buildLayout() {
  m_heading->setTextFormat(Qt::PlainText);
  m_heading->setWordWrap(true);
  m_heading->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* note = new QLabel(QStringLiteral("The rows are shown for reading. Change the file in another program, and "
                                         "import it again."));
  note->setWordWrap(true);
  m_view->setModel(&m_rows);
  m_view->setObjectName(QStringLiteral("rows"));
  m_view->setAccessibleName(QStringLiteral("Rows of the import file"));
  m_view->setAlternatingRowColors(true);
  m_view->setTabKeyNavigation(false);
  useCompactRows(*m_view);
  m_view->horizontalHeader()->setMaximumSectionSize(kGreatestColumn * fontMetrics().averageCharWidth());
  m_messagesLabel->setText(QStringLiteral("Messages of the row:"));
  m_messagesLabel->setBuddy(m_messages);
  m_messages->setObjectName(QStringLiteral("messages"));
  m_messages->setAccessibleName(QStringLiteral("Messages of the row"));
  m_messages->setReadOnly(true);
  m_messages->setTabChangesFocus(true);
  m_messages->setFixedHeight((kMessageLines + 1) * m_messages->fontMetrics().lineSpacing());
  m_messagesLabel->hide();
  m_messages->hide();

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(m_heading);
  layout->addWidget(note);
  layout->addWidget(m_view, 1);
  layout->addWidget(m_messagesLabel);
  layout->addWidget(m_messages);
  setFocusProxy(m_view);
}

void EditorPage::edit(const QString& fileName, const StringsPtr& headers, Integer columnCount, Integer delimiterAscii) {
  RowsPtr rows = readRows(fileName, delimiterAscii);
  const auto count = static_cast<qsizetype>(rows->count());
  show(QStringLiteral("%1: %2").arg(fileName, countOfLines(count)), std::move(rows), headers, columnCount, nullptr);
}

void EditorPage::create(const QString& fileName, const StringsPtr& headers, Integer columnCount) {
  show(fileName + QStringLiteral(": a new file of these columns"), nullptr, headers, columnCount, nullptr);
}

void EditorPage::showErrors(const QString& fileName, const RowsPtr& lines, const ErrorBeansPtr& messages,
                            const StringsPtr& headers, Integer columnCount) {
  show({}, lines, headers, columnCount, messages);
  m_heading->setText(QStringLiteral("%1: %2, %3 with messages")
                         .arg(fileName, countOfLines(m_rows.rowCount()))
                         .arg(m_rows.rowsWithMessages()));
}

void EditorPage::show(const QString& heading, RowsPtr lines, const StringsPtr& headers, int columnCount,
                      const ErrorBeansPtr& messages) {
  m_heading->setText(heading);
  m_rows.show(std::move(lines), headers, columnCount, messages);
  const bool hasMessages = messages != nullptr;
  m_messagesLabel->setVisible(hasMessages);
  m_messages->setVisible(hasMessages);
  m_messages->clear();
  m_view->resizeColumnsToContents();
  if (hasMessages) // they come first, because many columns may stand before theirs
    m_view->horizontalHeader()->moveSection(m_view->horizontalHeader()->visualIndex(m_rows.columnCount() - 1), 0);
  if (m_rows.rowCount() > 0 && m_rows.columnCount() > 0)
    m_view->setCurrentIndex(m_rows.index(0, hasMessages ? m_rows.columnCount() - 1 : 0));
}

void EditorPage::showMessages(const QModelIndex& current) {
  m_messages->setPlainText(current.isValid() ? m_rows.messages(current.row()) : QString());
}

} // namespace imex::desk
