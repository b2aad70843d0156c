#include "platform/qt/QtBrowserLauncher.h"

#include "support/TemporaryFolder.h"
#include "support/raised.h"

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

namespace imex::platform {

namespace {

/// Takes the pages in the place of the desktop's browser.
class Browser : public QObject {
  Q_OBJECT

 public:
  Browser() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
  ~Browser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

  QList<QUrl> opened;

  Q_INVOKABLE void open(const QUrl& url) { opened += url; }
};

TEST(QtBrowserLauncher, opensAPageWithEitherSeparatorAndCase) {
  const test::TemporaryFolder folder;
  folder.write("docs/SPEC page #1.html", "<html/>");
  Browser browser;
  QtBrowserLauncher().show(folder.path().string() + "\\Docs\\spec page #1.html", 0);
  EXPECT_EQ(QList<QUrl>{QUrl::fromLocalFile(QString::fromStdString(folder / "docs/SPEC page #1.html"))},
            browser.opened);
}

TEST(QtBrowserLauncher, opensAPageOfAnyName) {
  const test::TemporaryFolder folder;
  const std::pair<std::string, std::string> pages[] = {
      {"a b.html", "a%20b.html"},         {"100%.html", "100%25.html"},           {"%41.html", "%2541.html"},
      {"#1.html", "%231.html"},           {"a?b=c&d.html", "a%3Fb%3Dc%26d.html"}, {"\xC3\xBC.html", "%C3%BC.html"},
      {"\xFC.html", "%FC.html"},          {"a\xFF\xFE.html", "a%FF%FE.html"},     {"a:b;c.html", "a%3Ab%3Bc.html"},
      {"\"'<>.html", "%22%27%3C%3E.html"}};
  Browser browser;
  for (const auto& [name, encoded] : pages) {
    folder.write(name, "<html/>");
    QtBrowserLauncher().show(folder / name, 0);
    EXPECT_EQ("file://" + (folder / encoded), browser.opened.takeLast().toEncoded().toStdString());
  }
}

TEST(QtBrowserLauncher, relativePathIsThatOfTheCurrentDirectory) {
  Browser browser;
  QtBrowserLauncher().show("page.html", 0);
  EXPECT_EQ("file://" + (std::filesystem::current_path() / "page.html").string(),
            browser.opened.takeLast().toEncoded().toStdString());
}

TEST(QtBrowserLauncher, pageThatIsNotThereIsHandedOnUnchanged) {
  Browser browser;
  QtBrowserLauncher().show("/nowhere/page.html", 0);
  EXPECT_EQ(QList<QUrl>{QUrl(QStringLiteral("file:///nowhere/page.html"))}, browser.opened);
}

TEST(QtBrowserLauncher, refusalIsAnError) {
  // The platform without a screen has no programs to open anything with.
  const auto error = test::raised([] { QtBrowserLauncher().show("/data/page.html", 0); });
  ASSERT_TRUE(error);
  EXPECT_EQ(57, error->number());
  EXPECT_EQ("No program opens the page /data/page.html", error->description());
}

} // namespace

} // namespace imex::platform

#include "QtBrowserLauncher_test.moc"
