#include "desk/DeskApplication.h"

#include "support/FakeUi.h"

#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace imex::desk::test {

namespace {

using imex::test::Box;

class DeskApplicationTest : public testing::Test {
 protected:
  DeskApplicationTest() {
    QObject::connect(&button, &QPushButton::clicked, [this] {
      ++clicks;
      fail();
    });
    button.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&button));
  }

  imex::test::TestHost host;
  QPushButton button;
  int clicks = 0;
  std::function<void()> fail = [] {};
};

Box box(const std::string& error) {
  return {"The requested operation could not be completed.", 48, "Error Number: " + error};
}

TEST_F(DeskApplicationTest, errorOfASlotIsShownAndRecordedAndTheProgramGoesOn) {
  fail = [] { throw RuntimeError(1001, "CurlTransport", "Nobody answers"); };
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(std::vector<Box>{box("1001 - Nobody answers")}, host.messageBox.boxes);
  EXPECT_EQ(std::vector<std::string>{"! DeskApplication notify 1001 CurlTransport: Nobody answers"},
            host.trace->errors());

  fail = [] {};
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(2, clicks);
  EXPECT_EQ(1U, host.messageBox.boxes.size());
}

TEST_F(DeskApplicationTest, everyOtherExceptionBecomesAnError) {
  fail = [] { throw std::logic_error("what happened"); };
  QTest::mouseClick(&button, Qt::LeftButton);
  fail = [] { throw std::bad_alloc(); };
  QTest::keyClick(&button, Qt::Key_Space);
  ASSERT_EQ(2U, host.messageBox.boxes.size());
  EXPECT_EQ(box("51 - " + RuntimeError(51, "", "Internal error: what happened").description()),
            host.messageBox.boxes[0]);
  EXPECT_EQ(box("7 - Out of memory"), host.messageBox.boxes[1]);
}

TEST_F(DeskApplicationTest, errorOfATimerIsCaughtToo) {
  QTimer::singleShot(0, &button, [] { throw RuntimeError(ErrorNumber::fileNotFound); });
  EXPECT_TRUE(QTest::qWaitFor([&] { return !host.messageBox.boxes.empty(); }));
  EXPECT_EQ(std::vector<Box>{box("53 - File not found")}, host.messageBox.boxes);
}

} // namespace

} // namespace imex::desk::test

/// The toolkit is not made for errors that pass through it, and loses its own temporaries when one does.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions() { // NOLINT: its name
  return "leak:libQt6";
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) // needs no window system
    return RUN_ALL_TESTS();
  const imex::desk::DeskApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
