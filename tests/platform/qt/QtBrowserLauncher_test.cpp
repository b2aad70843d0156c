#include "platform/qt/QtBrowserLauncher.h"

#include "support/TemporaryFolder.h"
#include "support/raised.h"

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

#include <gtest/gtest.h>

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
