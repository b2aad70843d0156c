#pragma once

#include "desk/DeskHost.h"
#include "desk/DeskSettings.h"
#include "desk/MainWindow.h"
#include "platform/qt/QtGrid.h"
#include "support/QtTest.h"
#include "support/TemporaryFolder.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace imex::desk::test {

using imex::test::TemporaryFolder;

/// Answers modal dialogs while a test waits in one of them. Each is handed to the next step, once it is the active
/// window; a dialog that no step is there for fails the test and is closed.
class ModalDialogs {
 public:
  using Step = std::function<void(QWidget& dialog)>;

  ModalDialogs();

  void expect(Step step) { m_steps.push_back(std::move(step)); }

  /// A message box, which is kept as "title: text" and answered with Enter.
  void expectBox();
  std::vector<std::string> boxes;

  bool isDone() const { return m_steps.empty(); }

 private:
  void look();

  QTimer m_timer;
  std::deque<Step> m_steps;
  QWidget* m_answered = nullptr; ///< whose step is running; typing in it lets the timer run
};

/// The window over a temporary folder, with the repository's sample application directory.
class DeskTest : public testing::Test {
 protected:
  DeskTest();
  ~DeskTest() override;

  /// Makes the window, shows it and starts it. Settings are made before.
  void open();

  /// Makes the window the active one, as window systems do by themselves when a dialog closes.
  void activate();

  template <class Widget>
  Widget& child(QWidget& parent, const char* name) {
    Widget* widget = parent.findChild<Widget*>(QLatin1String(name));
    if (widget == nullptr)
      throw RuntimeError(ErrorNumber::objectVariableNotSet, name);
    return *widget;
  }
  template <class Widget>
  Widget& child(const char* name) {
    return child<Widget>(*window, name);
  }
  ImExActionCtrl& panel(const char* name) { return child<ImExActionCtrl>(name); }

  /// The page that is seen.
  QString pageName();
  QString statusText();

  /// Presses a button of a control with the mouse.
  void press(QWidget& control, const char* button);

  /// Copies a sample file into the folder and returns its path.
  std::string sample(const std::string& name);

  /// Types the path of a file into a panel.
  void typePath(ImExActionCtrl& panel, const std::string& path);

  /// The grid of the editor.
  platform::QtGrid& grid() { return child<platform::QtGrid>(child<ImExFileEdit>("editor"), "MSFlexGrid1"); }

  /// A cell of it; row 0 has the titles.
  std::string cell(int row, int column) { return std::string(grid().cells().text({row, column})); }

  /// What the document that is shown says, once it says `expected`.
  std::string documentText(const std::string& expected);

  /// Presses a key in the widget that has the focus.
  static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

  TemporaryFolder folder;
  DeskSettings settings;
  DeskHost host;
  Surroundings surroundings;
  std::unique_ptr<MainWindow> window;
  ModalDialogs dialogs;
};

/// The texts of a table's row, in the order of the model's columns.
std::vector<std::string> rowTexts(const QAbstractItemModel& model, int row);

} // namespace imex::desk::test
