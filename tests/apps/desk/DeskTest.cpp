#include "DeskTest.h"

#include "controls/common/text.h"

#include <QApplication>
#include <QListWidget>
#include <QMessageBox>
#include <QStatusBar>
#include <QWebEnginePage>
#include <QWebEngineView>

#include <filesystem>
#include <utility>

namespace imex::desk::test {

namespace {

const std::filesystem::path kShare = IMEX_SOURCE_DIR "/share";

std::string boxText(QWidget& dialog) {
  const auto* box = qobject_cast<QMessageBox*>(&dialog);
  return box == nullptr ? "no message box: " + toCore(dialog.windowTitle())
                        : toCore(box->windowTitle()) + ": " + toCore(box->text());
}

} // namespace

ModalDialogs::ModalDialogs() {
  QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
  m_timer.start(0);
}

void ModalDialogs::look() {
  QWidget* dialog = QApplication::activeModalWidget();
  if (dialog == nullptr || !dialog->isActiveWindow() || dialog == m_answered)
    return;
  if (m_steps.empty()) {
    ADD_FAILURE() << "unexpected: " << boxText(*dialog);
    dialog->close();
    return;
  }
  const Step step = std::move(m_steps.front());
  m_steps.pop_front();
  QWidget* const outer = std::exchange(m_answered, dialog);
  step(*dialog);
  m_answered = outer;
}

void ModalDialogs::expectBox() {
  expect([this](QWidget& dialog) {
    boxes.push_back(boxText(dialog));
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
}

DeskTest::DeskTest() : settings(folder / "config/desk.ini", "", kShare.string()), host(settings) {
  qputenv("XDG_CACHE_HOME", QByteArray::fromStdString(folder / "cache"));
  surroundings.serviceProgram = QStringLiteral(IMPORT_SERVICE_PROGRAM);
  surroundings.dataDirectory = toQt(folder / "data");
}

DeskTest::~DeskTest() {
  EXPECT_TRUE(dialogs.isDone()) << "a dialog that was expected did not come";
}

void DeskTest::open() {
  window = std::make_unique<MainWindow>(settings, std::move(surroundings));
  window->show();
  activate();
  window->start();
}

void DeskTest::activate() {
  window->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

QString DeskTest::pageName() {
  const auto& pages = child<QListWidget>("pages");
  return pages.currentItem()->text();
}

QString DeskTest::statusText() {
  return window->statusBar()->currentMessage();
}

void DeskTest::press(QWidget& control, const char* button) {
  QTest::mouseClick(&child<QAbstractButton>(control, button), Qt::LeftButton);
}

std::string DeskTest::documentText(const std::string& expected) {
  constexpr int kGreatestWait = 60'000;              // milliseconds; only a failing test waits so long
  const auto text = std::make_shared<std::string>(); // an answer may come when nobody waits for it any more
  const bool isShown = QTest::qWaitFor(
      [&] {
        if (const auto* view = child<ImExDocView>("documentView").findChild<QWebEngineView*>())
          view->page()->toPlainText([text](const QString& answer) { *text = answer.toStdString(); });
        return text->find(expected) != std::string::npos;
      },
      kGreatestWait);
  EXPECT_TRUE(isShown) << "the document does not say: " << expected;
  return *text;
}

std::string DeskTest::sample(const std::string& name) {
  return folder.write(name, imex::test::readFile(kShare / "samples" / name));
}

void DeskTest::typePath(ImExActionCtrl& panel, const std::string& path) {
  auto& edit = child<QLineEdit>(panel, "txtFilePath");
  edit.setFocus();
  edit.clear();
  QTest::keyClicks(&edit, toQt(path));
}

void DeskTest::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

std::vector<std::string> rowTexts(const QAbstractItemModel& model, int row) {
  std::vector<std::string> texts;
  for (int column = 0; column < model.columnCount(); ++column)
    texts.push_back(toCore(model.index(row, column).data().toString()));
  return texts;
}

} // namespace imex::desk::test
