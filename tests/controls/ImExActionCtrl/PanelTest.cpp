#include "PanelTest.h"

#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace imex::test {

namespace {

std::string describe(const StringsPtr& headers) {
  if (!headers)
    return "(nothing)";
  return headers->isEmpty() ? "0" : headers->item(1) + " ... " + std::to_string(headers->count());
}

std::string number(Integer value) {
  return toText(value);
}

template <class T>
std::string count(const CollectionPtr<T>& list) {
  return list ? std::to_string(list->count()) : "(nothing)";
}

/// Whether a line is an entry or an exit of something else than the panel.
bool isInnerTrace(const std::string& line) {
  const bool isTrace = line.starts_with("> ") || line.starts_with("< ");
  return isTrace && line.substr(2, 2) == "Im"; // ImExRequest, ImExModule, ImExReply, Import...Bean
}

} // namespace

PanelTest::PanelTest() : panel(*new ImExActionCtrl) {
  auto* layout = new QVBoxLayout(&window);
  layout->addWidget(&panel);
  panel.setObjectName(QStringLiteral("panel"));
  connectSignals();
  window.show();
  window.activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  host.trace->lines.clear();
}

void PanelTest::note(const std::string& line) {
  ui.journal(line);
  onSignal();
}

void PanelTest::connectSignals() {
  const auto editor = [this](const char* signal) {
    return [this, signal](QString& message, Integer& rows, Integer& columns, QString& file, StringsPtr& headers,
                          Integer& delimiter) {
      note(std::string(signal) + ' ' + toCore(message) + '|' + number(rows) + '|' + number(columns) + '|' +
           toCore(file) + '|' + describe(headers) + '|' + number(delimiter));
    };
  };
  QObject::connect(&panel, &ImExActionCtrl::editImportFile, &panel, editor("editImportFile"));
  QObject::connect(&panel, &ImExActionCtrl::newImportFile, &panel, editor("newImportFile"));
  QObject::connect(&panel, &ImExActionCtrl::insertProjectLineItems, &panel,
                   [this](ProjectLineItemsPtr& items) { note("insertProjectLineItems " + count(items)); });
  QObject::connect(&panel, &ImExActionCtrl::insertQuoteLineItems, &panel,
                   [this](QuoteLineItemsPtr& items) { note("insertQuoteLineItems " + count(items)); });
  QObject::connect(&panel, &ImExActionCtrl::insertOrderLineItems, &panel,
                   [this](OrderLineItemsPtr& items) { note("insertOrderLineItems " + count(items)); });
  QObject::connect(&panel, &ImExActionCtrl::showDocs, &panel,
                   [this](QString& path) { note("showDocs " + toCore(path)); });
  QObject::connect(&panel, &ImExActionCtrl::exitMaintenance, &panel, [this] { note("exitMaintenance"); });
  QObject::connect(&panel, &ImExActionCtrl::showErrors, &panel,
                   [this](QString& file, RowsPtr& lines, ErrorBeansPtr& rows, Integer& rowCount, Integer& columns,
                          StringsPtr& headers, Integer& delimiter) {
                     note("showErrors " + toCore(file) + '|' + count(lines) + '|' + count(rows) + '|' +
                          number(rowCount) + '|' + number(columns) + '|' + describe(headers) + '|' + number(delimiter));
                   });
}

Texts PanelTest::everything() {
  return std::exchange(host.trace->lines, {});
}

Texts PanelTest::happened() {
  Texts lines = everything();
  std::erase_if(lines, isInnerTrace);
  return lines;
}

void PanelTest::choose(const char* listName, const char* text) {
  DropDownList& box = list(listName);
  const int target = box.findText(QLatin1String(text));
  ASSERT_GE(target, 0) << text;
  box.setFocus();
  while (box.listIndex() != target) {
    const int before = box.listIndex();
    QTest::keyClick(&box, box.listIndex() < target ? Qt::Key_Down : Qt::Key_Up);
    ASSERT_NE(before, box.listIndex()) << listName;
  }
}

std::string PanelTest::giveFile(const std::vector<std::string>& lines, const std::string& name) {
  const std::string path = host.folder.write(name, textLines(lines));
  typePath(path);
  return path;
}

std::string customerLine(const std::string& type) {
  return join({"C1", "Firm", "Street 1", "", "", "Town", "ST", "12345", "", "", "555 1", "", type}, "\t");
}

std::string lineItemLine(int columns) {
  const std::vector<std::string> fields = {"2", "T", "Brand", "Cat-1", "9.50", "0.1", "8.50", "0.2", "7.50", "0.3"};
  return join({fields.begin(), fields.begin() + columns}, "\t");
}

Texts operator+(Texts a, const Texts& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

} // namespace imex::test
