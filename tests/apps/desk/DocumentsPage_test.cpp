#include "desk/DocumentsPage.h"

#include "DeskTest.h"
#include "controls/common/text.h"
#include "support/raised.h"

namespace imex::desk::test {

namespace {

class DeskDocuments : public testing::Test {
 protected:
  QString text() { return browser().toPlainText(); }
  PageBrowser& browser() { return *page.findChild<PageBrowser*>(); }
  QPushButton& back() { return *page.findChild<QPushButton*>(); }

  TemporaryFolder folder;
  DocumentsPage page;
};

TEST_F(DeskDocuments, showsAPageByABackslashPath) {
  folder.write("docs/SPECA.html", "<h1>Columns</h1><p>Name</p>");
  page.show(toQt(folder.path().string() + "\\DOCS\\specA.html"));
  EXPECT_EQ(QStringLiteral("Columns\nName"), text());
}

TEST_F(DeskDocuments, missingPageIsAnErrorAndTheOldOneStays) {
  page.show(toQt(folder.write("a.html", "first")));
  EXPECT_EQ(53, imex::test::raisedNumber([&] { page.show(toQt(folder / "b.html")); }));
  EXPECT_EQ(QStringLiteral("first"), text());
}

TEST_F(DeskDocuments, pageThatWasWrittenAnewIsShownAnew) {
  const QString path = toQt(folder.write("a.html", "first"));
  page.show(path);
  folder.write("a.html", "second");
  page.show(path);
  EXPECT_EQ(QStringLiteral("second"), text());
}

TEST_F(DeskDocuments, backGoesToThePageBefore) {
  page.show(toQt(folder.write("a.html", "first")));
  EXPECT_FALSE(back().isEnabled());
  page.show(toQt(folder.write("b.html", "second")));
  ASSERT_TRUE(back().isEnabled());
  QTest::mouseClick(&back(), Qt::LeftButton);
  EXPECT_EQ(QStringLiteral("first"), text());
}

TEST_F(DeskDocuments, scriptIsNoText) {
  page.show(toQt(folder.write("a.html", "<p>page</p><script>document.write('script')</script>")));
  EXPECT_EQ(QStringLiteral("page"), text());
}

TEST_F(DeskDocuments, nothingIsTakenFromANetwork) {
  EXPECT_FALSE(
      browser().loadResource(QTextDocument::ImageResource, QUrl(QStringLiteral("http://127.0.0.1:1/a.png"))).isValid());
  page.show(toQt(folder.write("a.html", "<a href=\"http://127.0.0.1:1/\">away</a>")));
  browser().setSource(QUrl(QStringLiteral("http://127.0.0.1:1/")));
  EXPECT_EQ(QStringLiteral("away"), text());
}

TEST_F(DeskDocuments, pictureBesideThePageIsLoaded) {
  folder.write("a.txt", "beside");
  page.show(toQt(folder.write("a.html", "page")));
  EXPECT_EQ(QByteArray("beside"),
            browser().loadResource(QTextDocument::ImageResource, QUrl(QStringLiteral("a.txt"))).toByteArray());
}

} // namespace

} // namespace imex::desk::test
