#include "desk/EditorPage.h"

#include "controls/common/text.h"
#include "host/MessageBox.h"
#include "host/Services.h"
#include "platform/qt/QtGrid.h"

#include <QFileInfo>

#include <functional>
#include <string_view>
#include <utility>

namespace imex::desk {

namespace {

bool isAnsweredYes(const QString& question) {
  return host::required(host::services().messageBox).show(toCore(question), host::kQuestionStyle, "Corvana") ==
         host::Answer::yes;
}

} // namespace

EditorPage::EditorPage(QWidget* parent)
    : QWidget(parent), m_editor(new ImExFileEdit),
      m_note(new QLabel(QStringLiteral("No file is open. Press Edit, New or Import on another page."))),
      m_shown(new QStackedLayout(this)) {
  m_editor->setObjectName(QStringLiteral("editor"));
  m_note->setObjectName(QStringLiteral("noFile"));
  m_note->setAlignment(Qt::AlignCenter);
  m_note->setWordWrap(true);
  m_note->setFocusPolicy(Qt::TabFocus); // to be read out where it is the whole page
  m_shown->addWidget(m_note);
  m_shown->addWidget(m_editor);
  close();
  connectEditor();
}

void EditorPage::connectEditor() {
  connect(m_editor, &ImExFileEdit::saving, this, [this](bool& isAllowed) {
    isAllowed = isAllowed && maySave();
    m_isBeingWritten = m_isBeingWritten || isAllowed;
  });
  connect(m_editor, &ImExFileEdit::saved, this, [this] {
    m_isBeingWritten = false;
    m_stamp = FileStamp::of(m_editor->fileName());
    m_savedContents = contents();
    Q_EMIT saved(m_editor->fileName());
  });
  connect(m_editor, &ImExFileEdit::cancel, this, [this] {
    if (!mayDiscard())
      return;
    close();
    Q_EMIT cancelled();
  });
}

// --- Opening --------------------------------------------------------------------------------------------------------

/// The stamp is older than a file that is read, so that no change in between is missed. Lines with messages were read
/// before they were sent.
template <class Load>
void EditorPage::open(const ImportFile& file, Load&& load) {
  close();
  m_stamp = FileStamp::of(file.path);
  std::forward<Load>(load)();
  m_savedContents = contents();
  m_shown->setCurrentWidget(m_editor);
  setFocusProxy(m_editor);
  m_editor->reset();
}

void EditorPage::describe(const ImportFile& file) {
  m_editor->fileName(file.path);
  m_editor->NumberRows(file.rowCount);
  m_editor->NumberColumns(file.columnCount);
  m_editor->HeaderCollection(file.headers);
  m_editor->DelimiterAscii(file.delimiterAscii);
}

void EditorPage::edit(const ImportFile& file) {
  open(file, [&] {
    describe(file);
    m_editor->loadGrid();
  });
}

void EditorPage::create(const ImportFile& file) {
  open(file, [&] {
    describe(file);
    m_editor->loadGridHeader();
    m_editor->resizeRows();
  });
  m_stamp = FileStamp(); // a file that is there all the same is another one
}

void EditorPage::showErrors(const ImportFile& file, const RowsPtr& lines, const ErrorBeansPtr& messages) {
  open(file, [&] {
    m_editor->loadGridWithErrors(file.path, lines, messages, file.rowCount, file.columnCount, file.headers,
                                 file.delimiterAscii);
  });
}

void EditorPage::close() {
  m_isBeingWritten = false;
  m_shown->setCurrentWidget(m_note);
  setFocusProxy(m_note);
}

// --- What the user is asked -----------------------------------------------------------------------------------------

bool EditorPage::hasChanges() const {
  return m_shown->currentWidget() == m_editor && (m_isBeingWritten || contents() != m_savedContents);
}

bool EditorPage::mayDiscard() {
  return !hasChanges() ||
         isAnsweredYes(QStringLiteral("The changes in %1 are not saved. Discard them?").arg(fileName()));
}

bool EditorPage::maySave() {
  const FileStamp now = FileStamp::of(m_editor->fileName());
  if (m_isBeingWritten || now == m_stamp || !now.exists())
    return true;
  return isAnsweredYes(
      QStringLiteral("%1 holds something else than what was opened here. Save over it?").arg(fileName()));
}

/// Stands for all texts of the grid.
std::size_t EditorPage::contents() const {
  const host::Grid& cells = m_editor->findChild<platform::QtGrid*>(QStringLiteral("MSFlexGrid1"))->cells();
  const auto [rows, columns] = cells.size();
  auto result = static_cast<std::size_t>(rows);
  for (int row = 1; row < rows; ++row) {
    for (int column = 1; column < columns; ++column)
      result = result * 31 + std::hash<std::string_view>{}(cells.text({row, column}));
  }
  return result;
}

QString EditorPage::fileName() const {
  return QFileInfo(m_editor->fileName()).fileName();
}

} // namespace imex::desk
