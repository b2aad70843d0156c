#include "platform/qt/QtProgressDisplay.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>

namespace imex::platform {

namespace {

QWidget* shownDisplay() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == QStringLiteral("progressDisplay"))
      return widget;
  }
  return nullptr;
}

class QtProgressDisplayTest : public testing::Test {
 protected:
  static QLabel& label(const char* name) { return *shownDisplay()->findChild<QLabel*>(QLatin1String(name)); }
};

TEST_F(QtProgressDisplayTest, isPaintedBeforeTheCallReturns) {
  struct PaintCount : QObject {
    int count = 0;
    bool eventFilter(QObject* watched, QEvent* event) override {
      if (event->type() == QEvent::Paint && watched->objectName() == QStringLiteral("message"))
        ++count;
      return false;
    }
  } paints;
  qApp->installEventFilter(&paints);
  QtProgressDisplay display;
  display.show("Corvana", "Performing Import...", "");
  EXPECT_GT(paints.count, 0);
  ASSERT_NE(nullptr, shownDisplay());
  EXPECT_TRUE(shownDisplay()->isVisible());
  EXPECT_TRUE(shownDisplay()->windowHandle()->isExposed());
  EXPECT_EQ(QStringLiteral("Corvana"), shownDisplay()->windowTitle());
  EXPECT_EQ(QStringLiteral("Performing Import..."), label("message").text());
  EXPECT_FALSE(label("third").isVisible());
}

TEST_F(QtProgressDisplayTest, goesWithItsObject) {
  {
    QtProgressDisplay display;
    display.show("Title", "Message", "Third");
    EXPECT_TRUE(label("third").isVisible());
    EXPECT_EQ(QStringLiteral("Third"), label("third").text());
    display.show("Title", "Other", "");
    EXPECT_EQ(QStringLiteral("Other"), label("message").text());
    EXPECT_FALSE(label("third").isVisible());
  }
  EXPECT_EQ(nullptr, shownDisplay());
}

TEST_F(QtProgressDisplayTest, unusedOneShowsNothing) {
  const QtProgressDisplay display;
  EXPECT_EQ(nullptr, shownDisplay());
}

TEST_F(QtProgressDisplayTest, survivesTheWindowThatItStandsOver) {
  auto window = std::make_unique<QWidget>();
  window->show();
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  QtProgressDisplay display;
  display.show("Title", "Message", "");
  ASSERT_NE(nullptr, shownDisplay());
  EXPECT_EQ(window.get(), shownDisplay()->parentWidget());
  window.reset();
  EXPECT_EQ(nullptr, shownDisplay());
}

} // namespace

} // namespace imex::platform
