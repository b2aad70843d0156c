#include "controls/ImExDocView/ImExDocView.h"

#include "../../platform/qt/modal.h"
#include "platform/browser/WebBrowser.h"
#include "support/ErrorLog.h"
#include "support/FakeUi.h"
#include "support/QtTest.h"
#include "support/raised.h"
#include "support/texts.h"

#include <QApplication>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWebEngineView>

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace imex::test {

namespace {

constexpr int kGreatestWait = 60'000; // milliseconds

const Texts kOk = {"> view cmdOK_Click()", "* closed", "< view cmdOK_Click()"};
const Texts kPrint = {"> view cmdPrint_Click()", "< view cmdPrint_Click()"};
const Texts kResize = {"> view UserControl_Resize()", "< view UserControl_Resize()"};

/// A viewer named "view" among the fakes, in a window of its own size, shown.
class ImExDocViewTest : public testing::Test {
 protected:
  ImExDocViewTest() : view(*new ImExDocView(&window)) {
    view.setObjectName(QStringLiteral("view"));
    QObject::connect(&view, &ImExDocView::closed, &view, [this] {
      ui.journal("closed");
      onClosed();
    });
    window.resize(800, 600);
    view.resize(640, 480);
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    atStart = happened();
  }

  Texts happened() { return std::exchange(host.trace->lines, {}); }

  template <class Widget>
  Widget& child(const char* name) {
    return *view.findChild<Widget*>(QLatin1String(name));
  }
  platform::WebBrowser& browser() { return child<platform::WebBrowser>("WebBrowser1"); }
  QPushButton& button(const char* name) { return child<QPushButton>(name); }

  void openPage(const std::string& html) {
    QSignalSpy loaded(&browser(), &platform::WebBrowser::loaded);
    QString path = toQt(host.folder.write("page.html", html));
    view.showDoc(path);
    ASSERT_TRUE(loaded.wait(kGreatestWait));
    (void)happened();
  }

  /// Where Tab goes from what has the focus now.
  std::string nextByTab() {
    QWidget* before = QApplication::focusWidget();
    QTest::keyClick(before, Qt::Key_Tab);
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() != before; }, kGreatestWait));
    return toCore(QApplication::focusWidget()->objectName());
  }

  TestHost host;
  FakeUi ui{host};
  QWidget window;
  ImExDocView& view;
  Texts atStart;
  std::function<void()> onClosed = [] {};
};

// --- Start and form -------------------------------------------------------------------------------------------------

TEST_F(ImExDocViewTest, startsWithTheEmptyPage) {
  EXPECT_EQ((Texts{"> ImExDocView UserControl_Initialize()", "< ImExDocView UserControl_Initialize()",
                   "> view UserControl_Resize()", "< view UserControl_Resize()"}),
            atStart);
  EXPECT_EQ("about:blank", browser().address());
}

TEST_F(ImExDocViewTest, goesToTheEmptyPageAtTheStart) {
  const std::string page = host.folder.write("page.html", "<html/>");
  std::string before;
  host.trace->onTrace = [&] { // the start is traced, so a host may get hold of the browser by then
    if (!before.empty())
      return;
    for (QWidget* widget : QApplication::allWidgets()) {
      auto* made = qobject_cast<platform::WebBrowser*>(widget);
      if (made == nullptr || made == &browser())
        continue;
      made->navigate(page);
      before = made->address();
    }
  };
  const ImExDocView other;
  host.trace->onTrace = [] {};
  EXPECT_NE("about:blank", before);
  EXPECT_EQ("about:blank", other.findChild<platform::WebBrowser*>(QStringLiteral("WebBrowser1"))->address());
}

TEST_F(ImExDocViewTest, logThatKeepsErrorsAloneIsToldOfNothingElse) {
  const auto log = ErrorLog::installed(host);
  const ImExDocView other;
  view.resize(403, 301);
  openPage("<html/>");
  QTest::mouseClick(&button("cmdOK"), Qt::LeftButton);
  EXPECT_EQ(Texts{}, log->errors());
}

TEST_F(ImExDocViewTest, failureAtTheStartIsRecordedAndShown) {
  int calls = 0;
  host.trace->onTrace = [&] {
    if (++calls == 2) // the exit
      throw RuntimeError(ErrorNumber::permissionDenied);
  };
  const ImExDocView other;
  EXPECT_EQ((Texts{"> ImExDocView UserControl_Initialize()",
                   "! ImExActionCtrl UserControl_Initialize 70 ImEx: Permission denied",
                   "* box [48] Error Number: 70 - Permission denied: The requested operation could not be completed."}),
            happened());
}

TEST_F(ImExDocViewTest, captionsAndAccessibleNames) {
  EXPECT_EQ(QStringLiteral("&Print"), button("cmdPrint").text());
  EXPECT_EQ(QStringLiteral("OK"), button("cmdOK").text());
  EXPECT_EQ(QStringLiteral("Print"), button("cmdPrint").accessibleName());
  EXPECT_EQ(QStringLiteral("OK"), button("cmdOK").accessibleName());
  EXPECT_EQ(QStringLiteral("Document"), browser().accessibleName());
}

// --- Layout ---------------------------------------------------------------------------------------------------------

TEST_F(ImExDocViewTest, laysItsPartsOut) {
  EXPECT_EQ(QRect(5, 5, 630, 440), browser().geometry());
  EXPECT_EQ(QRect(233, 450, 80, 28), button("cmdPrint").geometry());
  EXPECT_EQ(QRect(327, 450, 80, 28), button("cmdOK").geometry());
  view.resize(403, 301);
  EXPECT_EQ(kResize, happened());
  EXPECT_EQ(QRect(5, 5, 393, 261), browser().geometry());
  EXPECT_EQ(QRect(115, 271, 80, 28), button("cmdPrint").geometry());
  EXPECT_EQ(QRect(209, 271, 80, 28), button("cmdOK").geometry());
}

TEST_F(ImExDocViewTest, sizeThatFailsIsRecordedAndMovesNothing) {
  for (const QSize& size : {QSize(9, 300), QSize(300, 39)}) {
    view.resize(640, 480);
    (void)happened();
    view.resize(size);
    EXPECT_EQ((Texts{"> view UserControl_Resize()",
                     "~ view UserControl_Resize() 5 ImExDocView: Invalid procedure call or argument",
                     "< view UserControl_Resize()"}),
              happened());
    EXPECT_EQ(QRect(5, 5, 630, 440), browser().geometry());
    EXPECT_EQ(QRect(233, 450, 80, 28), button("cmdPrint").geometry());
    EXPECT_EQ(QRect(327, 450, 80, 28), button("cmdOK").geometry());
  }
}

TEST_F(ImExDocViewTest, smallestSizesThatFit) {
  for (const QSize& size : {QSize(10, 300), QSize(11, 300), QSize(300, 40), QSize(300, 41)}) {
    view.resize(size);
    EXPECT_EQ(kResize, happened());
    EXPECT_EQ(QRect(5, 5, size.width() - 10, size.height() - 40), browser().geometry());
  }
}

TEST_F(ImExDocViewTest, traceThatFailsDoesNotKeepTheLayoutFromFollowing) {
  host.trace->onTrace = [] { throw RuntimeError(ErrorNumber::diskFull); };
  view.resize(403, 301);
  EXPECT_EQ((Texts{"~ view UserControl_Resize() 61 ImEx: Disk full", "~ view UserControl_Resize() 61 ImEx: Disk full"}),
            happened());
  EXPECT_EQ(QRect(5, 5, 393, 261), browser().geometry());
}

// --- showDoc --------------------------------------------------------------------------------------------------------

TEST_F(ImExDocViewTest, showsADocument) {
  const std::string file = host.folder.write("docs/SPEC.html", "text");
  QSignalSpy loaded(&browser(), &platform::WebBrowser::loaded);
  QString path = toQt(host.folder.path().string()) + QStringLiteral("\\docs\\spec.html");
  const QString given = path;
  view.showDoc(path);
  EXPECT_EQ((Texts{"> view showDoc()", "< view showDoc()"}), happened());
  EXPECT_EQ(given, path);
  EXPECT_TRUE(loaded.wait(kGreatestWait));
  EXPECT_EQ("file://" + file, browser().address());
}

TEST_F(ImExDocViewTest, missingDocumentIsRecordedAndRaisedAgain) {
  openPage("stays");
  const std::string shown = browser().address();
  QString path = QStringLiteral("/nowhere/page.html");
  const auto error = raised([&] { view.showDoc(path); });
  ASSERT_TRUE(error);
  EXPECT_EQ(53, error->number());
  EXPECT_EQ("File not found: /nowhere/page.html", error->description());
  EXPECT_EQ((Texts{"> view showDoc()", "! ImExActionCtrl showDoc 53 WebBrowser: File not found: /nowhere/page.html"}),
            happened());
  EXPECT_EQ(shown, browser().address());
}

// --- OK -------------------------------------------------------------------------------------------------------------

TEST_F(ImExDocViewTest, okTellsThatTheUserIsDone) {
  QTest::mouseClick(&button("cmdOK"), Qt::LeftButton);
  EXPECT_EQ(kOk, happened());
}

TEST_F(ImExDocViewTest, errorOfTheHostIsAnErrorOfOk) {
  onClosed = [] { throw RuntimeError(ErrorNumber::overflow); };
  QTest::mouseClick(&button("cmdOK"), Qt::LeftButton);
  EXPECT_EQ((Texts{"> view cmdOK_Click()", "* closed", "! ImExActionCtrl cmdOK_Click 6 ImEx: Overflow",
                   "* box [48] Error Number: 6 - Overflow: The requested operation could not be completed."}),
            happened());
}

TEST_F(ImExDocViewTest, hostMayRemoveTheViewerWhenTheUserIsDone) {
  onClosed = [this] { view.deleteLater(); };
  QTest::mouseClick(&button("cmdOK"), Qt::LeftButton);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(nullptr, window.findChild<ImExDocView*>());
}

// --- Print ----------------------------------------------------------------------------------------------------------

TEST_F(ImExDocViewTest, printShowsTheDialog) {
  int dialogs = 0;
  withNextDialog<QPrintDialog>([&](QPrintDialog& dialog) {
    ++dialogs;
    dialog.reject();
  });
  QTest::mouseClick(&button("cmdPrint"), Qt::LeftButton);
  EXPECT_EQ(1, dialogs);
  EXPECT_EQ(kPrint, happened());
}

TEST_F(ImExDocViewTest, printThatFailsSaysSo) {
  openPage("text");
  withNextDialog<QPrintDialog>([&](QPrintDialog& dialog) {
    button("cmdPrint").click();
    dialog.reject();
  });
  QTest::mouseClick(&button("cmdPrint"), Qt::LeftButton);
  EXPECT_EQ((Texts{"> view cmdPrint_Click()", "> view cmdPrint_Click()",
                   "! ImExActionCtrl cmdPrint_Click 57 WebBrowser: A document is being printed already",
                   "* box [48] Error Number: 57 - A document is being printed already: Error encountered while "
                   "attempting to print.",
                   "< view cmdPrint_Click()"}),
            happened());
}

// --- Keys -----------------------------------------------------------------------------------------------------------

TEST_F(ImExDocViewTest, tabGoesFromTheDocumentToPrintAndOk) {
  browser().setFocus();
  EXPECT_EQ("cmdPrint", nextByTab());
  EXPECT_EQ("cmdOK", nextByTab());

  openPage("<p>text without a link");
  browser().setFocus();
  EXPECT_EQ("cmdPrint", nextByTab());
  EXPECT_EQ("cmdOK", nextByTab());
}

TEST_F(ImExDocViewTest, documentKeepsItsPlaceInTheOrderOfTheWindow) {
  openPage("text");
  const QWidget* document = view.findChild<QWebEngineView*>()->focusProxy();
  std::vector<const QWidget*> between;
  for (QWidget* widget = &browser(); widget != &button("cmdPrint"); widget = widget->nextInFocusChain())
    between.push_back(widget);
  EXPECT_EQ(1, std::count(between.begin(), between.end(), document));
  EXPECT_EQ(&button("cmdOK"), button("cmdPrint").nextInFocusChain());
}

TEST_F(ImExDocViewTest, documentTakesTheFocusOfTheEmptyPage) {
  browser().setFocus();
  openPage("text");
  EXPECT_TRUE(browser().isAncestorOf(QApplication::focusWidget()));
}

TEST_F(ImExDocViewTest, documentLeavesTheFocusWhereTheUserIs) {
  button("cmdOK").setFocus();
  openPage("text");
  EXPECT_EQ(&button("cmdOK"), QApplication::focusWidget());
}

TEST_F(ImExDocViewTest, tabGoesThroughTheLinksOfADocumentFirst) {
  openPage("<p><a href='http://example.org/'>a link</a>");
  browser().setFocus();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_EQ("cmdPrint", nextByTab());
}

TEST_F(ImExDocViewTest, enterPressesTheButtonWithTheFocus) {
  button("cmdOK").setFocus();
  QTest::keyClick(&button("cmdOK"), Qt::Key_Return);
  EXPECT_EQ(kOk, happened());
}

TEST_F(ImExDocViewTest, escapePressesOk) {
  button("cmdPrint").setFocus();
  QTest::keyClick(&button("cmdPrint"), Qt::Key_Escape);
  EXPECT_EQ(kOk, happened());
  openPage("text");
  browser().setFocus();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(kOk, happened());
}

TEST_F(ImExDocViewTest, escapeClosesTheFindBarFirst) {
  openPage("text");
  button("cmdOK").setFocus();
  QTest::keyClick(&button("cmdOK"), Qt::Key_F, Qt::ControlModifier);
  auto& field = child<QLineEdit>("findText");
  ASSERT_TRUE(field.hasFocus());
  QTest::keyClick(&field, Qt::Key_Escape);
  EXPECT_FALSE(field.isVisible());
  EXPECT_EQ(Texts{}, happened());
}

TEST_F(ImExDocViewTest, controlPPressesPrint) {
  openPage("text");
  browser().setFocus();
  int dialogs = 0;
  withNextDialog<QPrintDialog>([&](QPrintDialog& dialog) {
    ++dialogs;
    dialog.reject();
  });
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_P, Qt::ControlModifier);
  EXPECT_EQ(1, dialogs);
  EXPECT_EQ(kPrint, happened());
}

} // namespace

} // namespace imex::test
