#pragma once

#include "platform/browser/WebBrowser.h"
#include "support/FaultyServer.h"
#include "support/QtTest.h"
#include "support/TemporaryFolder.h"
#include "support/raised.h"

#include <QSignalSpy>
#include <QTest>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineView>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace imex::platform::test {

using imex::test::FaultyServer;
using imex::test::raised;
using imex::test::TemporaryFolder;

inline constexpr int kGreatestWait = 60'000; // milliseconds; a wait ends as soon as it may

/// Takes the place of the desktop's programs for addresses.
class Desktop : public QObject {
  Q_OBJECT

 public:
  Desktop();
  ~Desktop() override;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  std::vector<std::string> opened;

  Q_INVOKABLE void open(const QUrl& url) { opened.push_back(url.toString().toStdString()); }
};

/// A browser in a window of 640 by 480, and a folder for documents.
class BrowserTest : public testing::Test {
 protected:
  BrowserTest();

  /// Navigates and waits for the document; false where it does not come whole.
  bool open(const std::string& address);

  /// Writes a document into the folder and opens it.
  void openPage(std::string_view html, std::string_view name = "page.html");

  /// What the document says, as a reader sees it.
  std::string text();

  /// The value of an expression about the document, asked from outside it.
  QVariant ask(const char* expression);

  /// Clicks the middle of the first element that a CSS selector finds, with `modifiers`.
  void click(const char* selector, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
             Qt::MouseButton button = Qt::LeftButton);

  /// Lets the engine's processes deal with whatever was begun before this call.
  void settle();

  QWebEngineView& view() { return *browser.findChild<QWebEngineView*>(); }

  TemporaryFolder folder;
  QWidget window;
  WebBrowser& browser;
};

} // namespace imex::platform::test
