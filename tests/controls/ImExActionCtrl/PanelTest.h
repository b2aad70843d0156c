#pragma once

#include "controls/ImExActionCtrl/ImExActionCtrl.h"
#include "controls/common/DropDownList.h"
#include "support/FakeUi.h"
#include "support/QtTest.h"
#include "support/raised.h"
#include "support/texts.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace imex::test {

/// A panel named "panel" among the fakes, in a window, before its mode call. Its signals go into the same journal as
/// traces, boxes and dialogs:
///   * editImportFile message|rows|columns|file|first header ... number of headers|delimiter
class PanelTest : public testing::Test {
 protected:
  PanelTest();

  /// What has happened since the last call, in order and whole.
  Texts everything();

  /// The same without the trace lines of the request, of the records and of the module; their errors are kept.
  Texts happened();

  /// The lines of the panel's procedure "name()" that does nothing else.
  static Texts plain(const std::string& name) { return {"> panel " + name + "()", "< panel " + name + "()"}; }

  template <class Widget>
  Widget& child(const char* name) {
    Widget* widget = panel.findChild<Widget*>(QLatin1String(name));
    if (widget == nullptr)
      throw RuntimeError(ErrorNumber::objectVariableNotSet, name);
    return *widget;
  }
  DropDownList& list(const char* name) { return child<DropDownList>(name); }
  QRadioButton& option(const char* name) { return child<QRadioButton>(name); }
  std::string status() { return toCore(child<QPlainTextEdit>("txtValidationResults").toPlainText()); }
  std::string filePath() { return toCore(child<QLineEdit>("txtFilePath").text()); }

  /// Presses a button with the mouse.
  void click(const char* button) { QTest::mouseClick(&child<QAbstractButton>(button), Qt::LeftButton); }

  /// Goes through a list with the keyboard to the text, as a user does.
  void choose(const char* listName, const char* text);

  void typePath(const std::string& path) { child<QLineEdit>("txtFilePath").setText(toQt(path)); }

  /// Writes an import file into the temporary folder, puts its path into txtFilePath and returns it.
  std::string giveFile(const std::vector<std::string>& lines, const std::string& name = "import.txt");

  TestHost host;
  FakeUi ui{host};
  QWidget window;
  ImExActionCtrl& panel;

  /// Runs in every signal, after it was noted; may throw what the host's handler fails with.
  std::function<void()> onSignal = [] {};

 private:
  void note(const std::string& line);
  void connectSignals();
};

/// A line of a customer file in the agent's layout that passes the client's checks.
std::string customerLine(const std::string& type = "Dealer");

/// A line of a project, quote or order file that passes the checks.
std::string lineItemLine(int columns);

/// A list of these lines.
template <class... Line>
Texts lines(const Line&... line) {
  return {line...};
}

/// Joins lists of lines.
Texts operator+(Texts a, const Texts& b);

} // namespace imex::test
