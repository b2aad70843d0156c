#include "EditorTest.h"

#include <QVBoxLayout>

#include <algorithm>

namespace imex::test {

ErrorBeansPtr messages(const std::vector<std::pair<int, std::string>>& rows) {
  auto list = std::make_shared<Collection<std::shared_ptr<ImportExportErrorBean>>>();
  for (const auto& [row, text] : rows) {
    auto bean = std::make_shared<ImportExportErrorBean>();
    bean->RowNumber(row);
    bean->RowError(text);
    list->add(bean);
  }
  return list;
}

RowsPtr records(const std::vector<Texts>& lines) {
  auto rows = std::make_shared<Collection<StringsPtr>>();
  for (const Texts& line : lines) {
    auto fields = std::make_shared<Strings>();
    for (const std::string& field : line)
      fields->add(field);
    rows->add(fields);
  }
  return rows;
}

Texts operator+(Texts a, const Texts& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

EditorTest::EditorTest() : editor(*new ImExFileEdit) {
  host.services.keyboard = &keyboard;
  host.install();
  auto* layout = new QVBoxLayout(&window);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(&editor);
  editor.setObjectName(QStringLiteral("editor"));
  QObject::connect(&editor, &ImExFileEdit::saving, &editor, [this](bool& isAllowed) {
    note("saving");
    isAllowed = isSavingAllowed;
  });
  QObject::connect(&editor, &ImExFileEdit::saved, &editor, [this] { note("saved"); });
  QObject::connect(&editor, &ImExFileEdit::cancel, &editor, [this] { note("cancel"); });
  window.show();
  window.activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  host.trace->lines.clear();
}

void EditorTest::note(const std::string& signal) {
  ui.journal(signal);
  onSignal();
}

Texts EditorTest::happened() {
  Texts lines = everything();
  std::erase_if(lines, [](const std::string& entry) {
    const bool isTrace = entry.starts_with("> ") || entry.starts_with("< ");
    return isTrace && (entry.substr(2, 2) == "Im" || entry.find("UserControl_Resize") != std::string::npos);
  });
  return lines;
}

Texts EditorTest::row(int number) {
  Texts texts;
  for (int column = 0; column < cells().size().columns; ++column)
    texts.push_back(cell(number, column));
  return texts;
}

std::string EditorTest::focus() {
  const QWidget* widget = QApplication::focusWidget();
  return widget == nullptr ? "" : toCore(widget->objectName());
}

std::string EditorTest::giveFile(const std::string& bytes, int rows, int fields, char delimiter) {
  const std::string path = host.folder.write("import.txt", bytes);
  auto titles = std::make_shared<Strings>();
  for (int column = 1; column <= fields; ++column)
    titles->add("Title " + std::to_string(column));
  editor.fileName(toQt(path));
  editor.NumberRows(rows);
  editor.NumberColumns(fields);
  editor.HeaderCollection(titles);
  editor.DelimiterAscii(int{delimiter});
  host.trace->lines.clear();
  return path;
}

void EditorTest::open(const Texts& lines, int fields, char delimiter) {
  giveFile(textLines(lines), static_cast<int>(lines.size()), fields, delimiter);
  editor.loadGrid();
  editor.reset();
  host.trace->lines.clear();
}

void EditorTest::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QWidget* widget = QApplication::focusWidget();
  ASSERT_NE(nullptr, widget);
  QTest::keyPress(widget, key, modifiers);
  QTest::keyRelease(QApplication::focusWidget(), key, modifiers); // goes to what has the focus by then
}

void EditorTest::typeText(const char* text) {
  for (const char* c = text; *c != '\0'; ++c) {
    QTest::keyPress(QApplication::focusWidget(), *c);
    QTest::keyRelease(QApplication::focusWidget(), *c);
  }
}

std::pair<QWidget*, QPoint> EditorTest::partAt(int row, int column) {
  constexpr int kInside = 3; // pixels from the left edge
  const double perPixel = platform::twipsPerPixel(view());
  int left = 0;
  for (int before = 0; before < column; ++before)
    left += platform::pixelsOf(layout().columnWidth(before), perPixel);
  const double middle = layout().rowTop(row) + layout().rowHeight(row) / 2.0;
  const QPoint point(left + kInside, static_cast<int>(middle / perPixel));
  const QPoint inView = point + QPoint(view().frameWidth(), view().frameWidth());
  QWidget* part = view().childAt(inView);
  if (part == nullptr)
    throw RuntimeError(ErrorNumber::subscriptOutOfRange, "EditorTest");
  return {part, part->mapFrom(&view(), inView)};
}

void EditorTest::pressCell(int row, int column) {
  const auto [part, point] = partAt(row, column);
  QTest::mouseClick(part, Qt::LeftButton, Qt::NoModifier, point);
}

void EditorTest::doubleClickCell(int row, int column) {
  const auto [part, point] = partAt(row, column);
  QTest::mouseClick(part, Qt::LeftButton, Qt::NoModifier, point);
  QTest::mouseDClick(part, Qt::LeftButton, Qt::NoModifier, point);
}

void EditorTest::failAt(const std::string& call, ErrorNumber number) {
  host.files.before = [call, number](std::string_view name, std::string_view) {
    if (name == call)
      throw RuntimeError(number, "Disk");
  };
}

} // namespace imex::test
