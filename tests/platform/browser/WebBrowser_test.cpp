#include "BrowserTest.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>

#include <filesystem>

#include <unistd.h>

namespace imex::platform::test {

namespace {

class WebBrowserTest : public BrowserTest {
 protected:
  /// What is said in place of a document; empty while one is shown.
  std::string refusal() {
    const auto& paper = *browser.findChild<QLabel*>(QStringLiteral("paper"));
    return paper.isVisible() ? paper.text().toStdString() : "";
  }

  template <class Widget>
  Widget& child(const char* name) {
    return *browser.findChild<Widget*>(QLatin1String(name));
  }

  std::string findResult() { return child<QLabel>("findResult").text().toStdString(); }

  bool waitForResult(const std::string& result) {
    return QTest::qWaitFor([&] { return findResult() == result; }, kGreatestWait);
  }
};

// --- Addresses ------------------------------------------------------------------------------------------------------

TEST_F(WebBrowserTest, startsWithAnEmptyPageAndWithoutAnEngine) {
  EXPECT_EQ("about:blank", browser.address());
  browser.navigate("about:blank");
  EXPECT_EQ("about:blank", browser.address());
  EXPECT_EQ(nullptr, browser.findChild<QWebEngineView*>());
  EXPECT_EQ("", refusal());
}

TEST_F(WebBrowserTest, showsADocumentByItsPath) {
  openPage("<title>T</title><p>What it says");
  EXPECT_EQ("What it says", text());
  EXPECT_EQ("file://" + folder / "page.html", browser.address());
  EXPECT_TRUE(view().isVisible());
}

TEST_F(WebBrowserTest, takesEitherSeparatorAndCase) {
  folder.write("docs/SPEC.html", "Either");
  ASSERT_TRUE(open(folder.path().string() + "\\Docs\\spec.HTML"));
  EXPECT_EQ("Either", text());
}

TEST_F(WebBrowserTest, showsDocumentsOfOddNames) {
  for (const char* name : {"with blanks.html", "number #1.html", "100% of it.html", "%41.html", "a?b=c&d.html",
                           "Ünïcödé – ж.html", "quote's \"name\".html"}) {
    ASSERT_TRUE(open(folder.write(name, std::string("<meta charset=utf-8>") + name))) << name;
    EXPECT_EQ(name, text());
  }
}

TEST_F(WebBrowserTest, showsAFileAddressAtItsPlace) {
  folder.write("page.html", "<p>top<div style='height:5000px'></div><p id=end>end");
  ASSERT_TRUE(open("file://" + folder / "page.html" + "#end"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return ask("scrollY").toInt() > 0; }, kGreatestWait));
}

TEST_F(WebBrowserTest, showsALivePageWithItsScripts) {
  const FaultyServer server(FaultyServer::page(200, "<p id=p>dead</p><script>p.textContent = 'alive'</script>"));
  ASSERT_TRUE(open(server.address("/page")));
  EXPECT_EQ("alive", text());
  EXPECT_EQ("GET /page HTTP/1.1", server.waitForRequests(1).front().line);
}

TEST_F(WebBrowserTest, showsADocumentOfSixMegabytes) {
  std::string html = "<html><head><Title> Validation Results</title></head><table>\r\n";
  while (html.size() < 6'000'000)
    html += "<tr><td nowrap>\r\nLINE # : 1   STATUS  : Import successful for this line.\r\n</tr></td>\r\n";
  openPage(html + "<tr><td>THE END</tr></td>\r\n</table></html>\r\n");
  EXPECT_TRUE(text().ends_with("THE END"));
}

TEST_F(WebBrowserTest, showsTheNextDocumentInPlaceOfTheOneBefore) {
  openPage("first", "first.html");
  openPage("second", "second.html");
  EXPECT_EQ("second", text());
  ASSERT_TRUE(open("about:blank"));
  EXPECT_EQ("", text());
  EXPECT_EQ("about:blank", browser.address());
}

TEST_F(WebBrowserTest, readsAFileAnewEachTime) {
  openPage("before");
  openPage("after");
  EXPECT_EQ("after", text());
}

TEST_F(WebBrowserTest, documentThatCannotBeOpenedLeavesWhatIsShown) {
  openPage("stays");
  const std::string shown = browser.address();
  const auto error = raised([&] { browser.navigate(folder / "missing.html"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(53, error->number());
  EXPECT_EQ("File not found: " + folder / "missing.html", error->description());
  settle();
  EXPECT_EQ("stays", text());
  EXPECT_EQ(shown, browser.address());
}

TEST_F(WebBrowserTest, addressOutOfReachIsNamed) {
  const imex::test::ClosedPort port;
  const std::string address = "http://127.0.0.1:" + std::to_string(port.number()) + "/page.html";
  EXPECT_FALSE(open(address));
  EXPECT_EQ("This address cannot be reached: " + address, refusal());
  openPage("and on");
  EXPECT_EQ("", refusal());
  EXPECT_EQ("and on", text());
}

TEST_F(WebBrowserTest, refusalOfAServerIsShownAsItPutsIt) {
  const FaultyServer server(FaultyServer::page(404, "<p>There is no such page"));
  (void)open(server.address("/gone"));
  EXPECT_EQ("", refusal());
  EXPECT_EQ("There is no such page", text());
}

TEST_F(WebBrowserTest, fileThatIsNoDocumentIsNamed) {
  const std::string path = folder.write("program.bin", std::string("\x7f\x45\x4c\x46\x00\x01\x02", 7));
  EXPECT_FALSE(open(path));
  EXPECT_EQ("This document cannot be shown: " + path, refusal());
}

// --- What a program must do -----------------------------------------------------------------------------------------

/// Qt says that it is too late for this, which is what the test is about.
void prepareEngine(bool isPrepared) {
  const QtMessageHandler handler = qInstallMessageHandler([](auto, const auto&, const auto&) {});
  QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts, isPrepared);
  qInstallMessageHandler(handler);
}

TEST_F(WebBrowserTest, engineThatWasNotPreparedIsAnError) {
  prepareEngine(false);
  const auto restore = qScopeGuard([] { prepareEngine(true); });
  const std::string path = folder.write("page.html", "text");
  const auto error = raised([&] { browser.navigate(path); });
  ASSERT_TRUE(error);
  EXPECT_EQ(429, error->number());
  EXPECT_EQ("The browser cannot start: the application was made without Qt::AA_ShareOpenGLContexts",
            error->description());
  EXPECT_EQ("about:blank", browser.address());
}

TEST_F(WebBrowserTest, superuserWithoutTheSwitchIsAnError) {
  if (::geteuid() != 0)
    GTEST_SKIP() << "not the superuser";
  const QByteArray value = qgetenv("QTWEBENGINE_DISABLE_SANDBOX");
  qunsetenv("QTWEBENGINE_DISABLE_SANDBOX");
  const auto restore = qScopeGuard([&] { qputenv("QTWEBENGINE_DISABLE_SANDBOX", value); });
  const std::string path = folder.write("page.html", "text");
  const auto error = raised([&] { browser.navigate(path); });
  ASSERT_TRUE(error);
  EXPECT_EQ(429, error->number());
  EXPECT_EQ("The browser does not run for the superuser unless QTWEBENGINE_DISABLE_SANDBOX is set",
            error->description());
}

// --- Reading --------------------------------------------------------------------------------------------------------

TEST_F(WebBrowserTest, textHasTheSizeAndTypefaceOfTheWidget) {
  constexpr const char* size = "getComputedStyle(document.querySelector('p')).fontSize";
  QFont font = browser.font();
  font.setPixelSize(21);
  browser.setFont(font);
  openPage("<p>text</p><pre>fixed</pre>");
  EXPECT_EQ("21px", ask(size).toString());
  EXPECT_EQ("17px", ask("getComputedStyle(document.querySelector('pre')).fontSize").toString());

  font.setPixelSize(30);
  browser.setFont(font);
  EXPECT_TRUE(QTest::qWaitFor([&] { return ask(size).toString() == QLatin1String("30px"); }, kGreatestWait));
}

TEST_F(WebBrowserTest, textFollowsTheDesktop) {
  openPage("<p>text</p>");
  QFont font = QApplication::font();
  font.setPixelSize(27);
  QApplication::setFont(font);
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return ask("getComputedStyle(document.querySelector('p')).fontSize").toString() == QLatin1String("27px"); },
      kGreatestWait));
}

// --- Finding --------------------------------------------------------------------------------------------------------

TEST_F(WebBrowserTest, findsATextWithTheKeyboard) {
  openPage("<p>one fish, two fish, red fish");
  view().setFocus();
  QTest::keyClick(view().focusProxy(), Qt::Key_F, Qt::ControlModifier);
  auto& field = child<QLineEdit>("findText");
  EXPECT_TRUE(field.hasFocus());
  QTest::keyClicks(&field, QStringLiteral("fish"));
  EXPECT_TRUE(waitForResult("1 of 3")) << findResult();
  QTest::keyClick(&field, Qt::Key_Return);
  EXPECT_TRUE(waitForResult("2 of 3")) << findResult();
  QTest::keyClick(&field, Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_TRUE(waitForResult("3 of 3")) << findResult();
  QTest::keyClick(&field, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_TRUE(waitForResult("2 of 3")) << findResult();
}

TEST_F(WebBrowserTest, saysThatATextIsNotFound) {
  openPage("<p>one fish");
  browser.findAction()->trigger();
  QTest::keyClicks(&child<QLineEdit>("findText"), QStringLiteral("fowl"));
  EXPECT_TRUE(waitForResult("Not found")) << findResult();
}

TEST_F(WebBrowserTest, findsNothingInTheEmptyPage) {
  browser.findAction()->trigger();
  QTest::keyClicks(&child<QLineEdit>("findText"), QStringLiteral("x"));
  EXPECT_EQ("Not found", findResult());
}

TEST_F(WebBrowserTest, escapeEndsFindingAndGoesBackToTheDocument) {
  openPage("<p>one fish");
  browser.findAction()->trigger();
  auto& field = child<QLineEdit>("findText");
  QTest::keyClicks(&field, QStringLiteral("fish"));
  ASSERT_TRUE(waitForResult("1 of 1"));
  QTest::keyClick(&field, Qt::Key_Escape);
  EXPECT_FALSE(field.isVisible());
  EXPECT_TRUE(view().focusProxy()->hasFocus());
  EXPECT_FALSE(browser.closeFind());
}

TEST_F(WebBrowserTest, theFindBarSaysWhatItIsToAScreenReader) {
  EXPECT_EQ(QStringLiteral("Find in the document"), child<QLineEdit>("findText").accessibleName());
  EXPECT_EQ(QStringLiteral("Previous"), child<QPushButton>("findPrevious").accessibleName());
  EXPECT_EQ(QStringLiteral("Next"), child<QPushButton>("findNext").accessibleName());
  EXPECT_EQ(QStringLiteral("Close"), child<QPushButton>("findClose").accessibleName());
}

} // namespace

} // namespace imex::platform::test
