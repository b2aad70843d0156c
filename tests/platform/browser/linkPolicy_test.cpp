#include "BrowserTest.h"
#include "platform/browser/linkPolicy.h"

#include <vector>

namespace imex::platform::test {

namespace {

using Type = QWebEnginePage::NavigationType;

struct Case {
  const char* target;
  Type type;
  Place place;
};

constexpr Type kLink = QWebEnginePage::NavigationTypeLinkClicked;
constexpr Type kTyped = QWebEnginePage::NavigationTypeTyped;
constexpr Type kForm = QWebEnginePage::NavigationTypeFormSubmitted;
constexpr Type kRedirect = QWebEnginePage::NavigationTypeRedirect;
constexpr Type kOther = QWebEnginePage::NavigationTypeOther;
constexpr Type kReload = QWebEnginePage::NavigationTypeReload;
constexpr Type kHistory = QWebEnginePage::NavigationTypeBackForward;

Place placeFrom(const char* document, const char* target, Type type, bool isMainFrame = true) {
  return placeOf({QUrl(QLatin1String(document)), QUrl(QLatin1String(target)), type, isMainFrame});
}

TEST(LinkPolicy, documentOfTheFileSystem) {
  constexpr const char* document = "file:///d/page.html";
  const std::vector<Case> cases = {
      {document, kTyped, Place::here},
      {document, kReload, Place::here},
      {document, kRedirect, Place::nowhere},
      {document, kForm, Place::nowhere},
      {"file:///d/page.html#part", kLink, Place::here},
      {"file:///d/page.html#part", kHistory, Place::here},
      {"file:///d/page.html?a=b", kForm, Place::nowhere},
      {"file:///d/page.html?a=b", kLink, Place::nowhere},
      {"file:///d/other.html", kLink, Place::nowhere},
      {"file:///d/other.html", kTyped, Place::nowhere},
      {"http://example.org/", kLink, Place::outside},
      {"https://example.org/", kLink, Place::outside},
      {"mailto:a@b.example", kLink, Place::outside},
      {"http://example.org/", kTyped, Place::nowhere},
      {"http://example.org/", kForm, Place::nowhere},
      {"http://example.org/", kRedirect, Place::nowhere},
      {"http://example.org/", kOther, Place::nowhere},
      {"ftp://example.org/", kLink, Place::nowhere},
      {"javascript:alert(1)", kLink, Place::nowhere},
      {"data:text/html,x", kLink, Place::nowhere},
      {"view-source:file:///d/page.html", kLink, Place::nowhere},
      {"about:blank", kOther, Place::nowhere},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(one.place, placeFrom(document, one.target, one.type)) << one.target << ' ' << one.type;
    EXPECT_EQ(Place::nowhere, placeFrom(document, one.target, one.type, false)) << one.target << ' ' << one.type;
  }
}

TEST(LinkPolicy, documentOfTheWeb) {
  constexpr const char* document = "http://example.org/page";
  EXPECT_EQ(Place::here, placeFrom(document, "https://example.org/other", kLink));
  EXPECT_EQ(Place::here, placeFrom(document, "https://example.org/other", kRedirect));
  EXPECT_EQ(Place::here, placeFrom(document, "https://example.org/answer", kForm));
  EXPECT_EQ(Place::outside, placeFrom(document, "mailto:a@b.example", kLink));
  EXPECT_EQ(Place::nowhere, placeFrom(document, "mailto:a@b.example", kOther));
  EXPECT_EQ(Place::nowhere, placeFrom(document, "file:///etc/passwd", kLink));
  EXPECT_EQ(Place::nowhere, placeFrom(document, "ftp://example.org/", kLink));
  EXPECT_EQ(Place::here, placeFrom(document, "about:blank", kOther, false));
}

TEST(LinkPolicy, windows) {
  EXPECT_EQ(Place::outside, placeOfWindow(QUrl(QStringLiteral("http://example.org/")), true));
  EXPECT_EQ(Place::outside, placeOfWindow(QUrl(QStringLiteral("mailto:a@b.example")), true));
  EXPECT_EQ(Place::nowhere, placeOfWindow(QUrl(QStringLiteral("http://example.org/")), false));
  EXPECT_EQ(Place::nowhere, placeOfWindow(QUrl(QStringLiteral("file:///etc/passwd")), true));
}

class LinkPolicyTest : public BrowserTest {
 protected:
  /// A document with one link of these attributes.
  void openLink(const std::string& attributes) {
    openPage("<p id=here style='margin-top:40px'><a " + attributes + ">a link to click</a>");
  }

  std::vector<std::string> openedAfterClick(Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                                            Qt::MouseButton button = Qt::LeftButton) {
    click("a", modifiers, button);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !desktop.opened.empty(); }, kGreatestWait));
    settle();
    return desktop.opened;
  }

  FaultyServer server;
  std::string address = server.address("/link");
  std::vector<std::string> once = {address};
  Desktop desktop;
};

TEST_F(LinkPolicyTest, linkOpensOutsideOnceAndTheDocumentStays) {
  openLink("href='" + address + "' ping='" + server.address("/ping") + "'");
  EXPECT_EQ(once, openedAfterClick());
  EXPECT_EQ("a link to click", text());
  EXPECT_EQ(0U, server.requests().size());
}

TEST_F(LinkPolicyTest, linkToANewWindowOpensOutside) {
  openLink("target=_blank href='" + address + "'");
  EXPECT_EQ(once, openedAfterClick());
  EXPECT_EQ(0U, server.requests().size());
}

TEST_F(LinkPolicyTest, linkForANewTabOpensOutside) {
  openLink("href='" + address + "'");
  EXPECT_EQ(once, openedAfterClick(Qt::ControlModifier));
  EXPECT_EQ(0U, server.requests().size());
}

TEST_F(LinkPolicyTest, linkUnderTheMiddleButtonOpensOutside) {
  openLink("href='" + address + "'");
  EXPECT_EQ(once, openedAfterClick(Qt::NoModifier, Qt::MiddleButton));
}

TEST_F(LinkPolicyTest, linkToDownloadOpensOutside) {
  openLink("download href='" + address + "'");
  EXPECT_EQ(once, openedAfterClick());
  EXPECT_EQ(0U, server.requests().size());
}

TEST_F(LinkPolicyTest, mailAddressOpensOutside) {
  openLink("href='mailto:ann@example.org'");
  EXPECT_EQ(std::vector<std::string>{"mailto:ann@example.org"}, openedAfterClick());
}

TEST_F(LinkPolicyTest, linkToAFileLeadsNowhere) {
  folder.write("other.html", "another");
  openLink("href='other.html'");
  click("a");
  settle();
  EXPECT_EQ("a link to click", text());
  EXPECT_EQ(std::vector<std::string>{}, desktop.opened);
}

TEST_F(LinkPolicyTest, linkWithinTheDocumentScrolls) {
  openPage("<a href='#end'>to the end</a><div style='height:5000px'></div><p id=end>end");
  click("a");
  EXPECT_TRUE(QTest::qWaitFor([&] { return ask("scrollY").toInt() > 0; }, kGreatestWait));
  EXPECT_EQ(std::vector<std::string>{}, desktop.opened);
}

TEST_F(LinkPolicyTest, formsAreNotSent) {
  for (const char* method : {"get", "post"}) {
    openPage(std::string("<form method=") + method + " action='" + address +
             "'><input name=a value=b><input type=submit id=send></form>stays");
    click("#send");
    settle();
    EXPECT_EQ("stays", text()) << method;
  }
  EXPECT_EQ(0U, server.requests().size());
  EXPECT_EQ(std::vector<std::string>{}, desktop.opened);
}

TEST_F(LinkPolicyTest, linkOfTheWebStaysInTheBrowser) {
  server.answerWith({FaultyServer::page(200, "<a href='/next'>next</a>"), FaultyServer::page(200, "the next page")});
  ASSERT_TRUE(open(server.address("/first")));
  click("a");
  EXPECT_TRUE(QTest::qWaitFor([&] { return text() == "the next page"; }, kGreatestWait));
  EXPECT_EQ(std::vector<std::string>{}, desktop.opened);
}

} // namespace

} // namespace imex::platform::test
